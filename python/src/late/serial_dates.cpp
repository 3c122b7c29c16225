#include "serial_dates.h"

#include <datetime.h>

#include <cmath>
#include <string>

#include "late_values.h"
#include "qvscriptwells/qv_exception.h"
#include "qvscriptwells/serial_date.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

void ImportDates() {
  if (PyDateTimeAPI == nullptr) PyDateTime_IMPORT;
  if (PyDateTimeAPI == nullptr) throw py::error_already_set();
}

void RequireNoZone(PyObject* zone) {
  if (zone != Py_None)
    RefuseValue(
        "a point in time with a time zone cannot be passed, since the interfaces have none; leave it out: "
        "value.replace(tzinfo=None)");
}

double DayOf(PyObject* date) {
  return qv::EncodeDate(static_cast<std::int16_t>(PyDateTime_GET_YEAR(date)),
                        static_cast<std::int16_t>(PyDateTime_GET_MONTH(date)),
                        static_cast<std::int16_t>(PyDateTime_GET_DAY(date)));
}

double FractionOf(int hour, int minute, int second, int microsecond) {
  return qv::EncodeTime(static_cast<std::int16_t>(hour), static_cast<std::int16_t>(minute),
                        static_cast<std::int16_t>(second), static_cast<std::int16_t>(microsecond / 1000));
}

double FromTime(PyObject* time) {
  RequireNoZone(PyDateTime_TIME_GET_TZINFO(time));
  return FractionOf(PyDateTime_TIME_GET_HOUR(time), PyDateTime_TIME_GET_MINUTE(time),
                    PyDateTime_TIME_GET_SECOND(time), PyDateTime_TIME_GET_MICROSECOND(time));
}

double FromDateTime(PyObject* point) {
  RequireNoZone(PyDateTime_DATE_GET_TZINFO(point));
  return DayOf(point) + FractionOf(PyDateTime_DATE_GET_HOUR(point), PyDateTime_DATE_GET_MINUTE(point),
                                   PyDateTime_DATE_GET_SECOND(point), PyDateTime_DATE_GET_MICROSECOND(point));
}

py::object Made(PyObject* point) {
  if (point == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(point);
}

// Before day 0, too, the day is the one on which the value lies. A time that rounds to midnight belongs to
// the next day.
py::object PointAt(double day, qv::ClockTime time, bool isMidnight) {
  if (time.hour == 24) {
    time = {};
    day += 1;
  }
  const int microsecond = time.millisecond * 1000;
  if (day == 0) return Made(PyTime_FromTime(time.hour, time.minute, time.second, microsecond));
  const qv::CalendarDate date = qv::DecodeDate(day);
  if (isMidnight) return Made(PyDate_FromDate(date.year, date.month, date.day));
  return Made(PyDateTime_FromDateAndTime(date.year, date.month, date.day, time.hour, time.minute, time.second,
                                         microsecond));
}

}  // namespace

std::optional<double> SerialOf(py::handle value) {
  ImportDates();
  PyObject* const raw = value.ptr();
  if (PyDateTime_Check(raw)) return FromDateTime(raw);
  if (PyDate_Check(raw)) return DayOf(raw);
  if (PyTime_Check(raw)) return FromTime(raw);
  return std::nullopt;
}

py::object PointOf(double serial) {
  ImportDates();
  const double day = std::floor(serial);
  try {
    return PointAt(day, qv::DecodeTime(serial - day), serial == day);
  } catch (const qv::QvException&) {
    RefuseValue("the date " + std::to_string(serial) +
                " is outside the years 1 to 9999 that Python's dates have");
  }
}

}  // namespace scriptwells::late
