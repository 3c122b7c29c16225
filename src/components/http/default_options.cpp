#include "components/http/default_options.h"

#include <charconv>
#include <new>
#include <string>

#include "registry/registry_file.h"

namespace qv {
namespace {

constexpr char16_t kBelow[] = u"SOFTWARE\\Quorvane\\Quorvane\\Http\\";

struct NumberRow {
  const char16_t* name;
  std::int64_t HttpOptions::*field;
};

constexpr NumberRow kNumbers[] = {
    {u"ConnectTimeout", &HttpOptions::connectTimeout},
    {u"IdleTimeout", &HttpOptions::idleTimeout},
    {u"TotalTimeout", &HttpOptions::totalTimeout},
    {u"MinBytesPerSecond", &HttpOptions::minBytesPerSecond},
    {u"RateWindow", &HttpOptions::rateWindow},
};

struct TextRow {
  const char16_t* name;
  WideString HttpOptions::*field;
};

constexpr TextRow kFiles[] = {
    {u"CaFile", &HttpOptions::caFile},
    {u"CertificateFile", &HttpOptions::certificateFile},
    {u"KeyFile", &HttpOptions::keyFile},
};

WideString Find(const std::vector<RegistryLayer>& layers, const char16_t* name) {
  const WideString key(std::u16string(kBelow) + name);
  for (const RegistryLayer& layer : layers) {
    WideString value = FindRegistryValue(layer.entries, key);
    if (!value.IsNull()) return value;
  }
  return WideString();
}

// Digits only. False for anything else and beyond 63 bits.
bool ReadNumber(const WideString& text, std::int64_t* number) {
  const std::string digits = ToUtf8(text);
  if (digits.empty() || digits.front() == '-') return false;
  std::int64_t read = 0;
  const char* end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, read);
  if (result.ec != std::errc() || result.ptr != end) return false;
  *number = read;
  return true;
}

}  // namespace

HttpOptions OptionsFromRegistry(const std::vector<RegistryLayer>& layers) {
  HttpOptions options;
  for (const NumberRow& row : kNumbers) ReadNumber(Find(layers, row.name), &(options.*row.field));
  for (const TextRow& row : kFiles) options.*row.field = Find(layers, row.name);
  return options;
}

// Never destroyed, since a host may close its session while the process ends. When memory runs out the next
// call reads again.
HttpOptions DefaultHttpOptions() {
  alignas(HttpOptions) static unsigned char room[sizeof(HttpOptions)];
  static const HttpOptions* const defaults = new (room) HttpOptions(OptionsFromRegistry(ReadRegistry()));
  return *defaults;
}

}  // namespace qv
