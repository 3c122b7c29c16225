// The logic of a Duration: counts of units, a sign, and their text form.
#pragma once

#include <cstdint>
#include <string_view>

#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// Failure: EQvException with code 0 and a message that begins with "Invalid duration format:".
class DurationImpl {
 public:
  virtual ~DurationImpl() = default;
  virtual void SetText(WideString text);
  virtual WideString GetText();
  virtual std::int16_t get_Day();
  virtual void put_Day(std::int16_t value);
  virtual std::int16_t get_Month();
  virtual void put_Month(std::int16_t value);
  virtual std::int16_t get_Year();
  virtual void put_Year(std::int16_t value);
  virtual std::int16_t get_Hour();
  virtual void put_Hour(std::int16_t value);
  virtual std::int16_t get_Min();
  virtual void put_Min(std::int16_t value);
  virtual double get_Sec();
  virtual void put_Sec(double value);
  virtual VARIANT_BOOL get_Negative();
  virtual void put_Negative(VARIANT_BOOL value);

 private:
  void ReadSign(std::u16string_view text);
  void ReadDatePart(std::u16string_view text);
  void ReadTimePart(std::u16string_view text);

  std::int16_t day_ = 0;
  std::int16_t month_ = 0;
  std::int16_t year_ = 0;
  std::int16_t hour_ = 0;
  std::int16_t minute_ = 0;
  double second_ = 0;
  VARIANT_BOOL negative_ = 0;
};

}  // namespace qv
