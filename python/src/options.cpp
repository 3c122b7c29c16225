#include "options.h"

#include <cmath>
#include <string>
#include <string_view>

#include "running_call.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

template <class Target>
struct OptionRow {
  const char* name;
  void (*set)(Target& options, py::handle value);
};

template <auto Member>
void Set(Options& options, py::handle value) {
  using Type = std::decay_t<decltype(options.*Member)>;
  options.*Member = value.cast<Type>();
}

template <auto Member, class Target>
void SetSpan(Target& options, py::handle value) {
  options.*Member = ToSpan(value);
}

// A path may hold any bytes.
template <auto Member>
void SetPath(Options& options, py::handle value) {
  PyObject* bytes = nullptr;
  if (PyUnicode_FSConverter(value.ptr(), &bytes) == 0) throw py::error_already_set();
  options.*Member = std::string(py::reinterpret_steal<py::bytes>(bytes));
}

void SetListener(Options& options, py::handle value) {
  if (!value.cast<bool>()) return;
  options.listener = [](const Exchange& exchange) {
    if (RunningCall* const call = RunningCall::Current()) call->OnExchange(exchange);
  };
}

constexpr OptionRow<Options> kOptions[] = {
    {"language", &Set<&Options::language>},
    {"proxy", &Set<&Options::proxy>},
    {"connect_timeout", &SetSpan<&Options::connectTimeout>},
    {"silence_timeout", &SetSpan<&Options::silenceTimeout>},
    {"timeout", &SetSpan<&Options::totalTimeout>},
    {"close_timeout", &SetSpan<&Options::closeTimeout>},
    {"least_bytes_per_second", &Set<&Options::leastBytesPerSecond>},
    {"most_answer_bytes", &Set<&Options::mostAnswerBytes>},
    {"authorities", &SetPath<&Options::authorities>},
    {"certificate", &SetPath<&Options::certificate>},
    {"key", &SetPath<&Options::key>},
    {"home_directory", &SetPath<&Options::homeDirectory>},
    {"replace_files", &Set<&Options::replaceFiles>},
    {"hidden_files", &Set<&Options::hiddenFiles>},
    {"strict", &Set<&Options::strict>},
    {"listens", &SetListener},
    {"show_secrets", &Set<&Options::showSecrets>},
    {"listener_bodies", &Set<&Options::listenerBodies>},
    {"record", &SetPath<&Options::record>},
    {"replay", &SetPath<&Options::replay>},
};

constexpr OptionRow<CallOptions> kCallOptions[] = {
    {"language", [](CallOptions& to, py::handle value) { to.run.language = value.cast<std::string>(); }},
    {"strict", [](CallOptions& to, py::handle value) { to.run.strict = to.strict = value.cast<bool>(); }},
    {"timeout", [](CallOptions& to, py::handle value) { to.run.totalTimeout = ToSpan(value); }},
    {"cancel", [](CallOptions& to, py::handle value) { to.run.cancel = value.cast<CancelToken>(); }},
};

template <class Target, std::size_t kCount>
void SetAll(Target& target, const OptionRow<Target> (&rows)[kCount], const py::dict& given) {
  for (const auto& [key, value] : given) {
    const std::string name = py::str(key);
    const OptionRow<Target>* found = nullptr;
    for (const OptionRow<Target>& row : rows)
      if (name == row.name) found = &row;
    if (found == nullptr) throw py::type_error("there is no option " + name);
    if (value.is_none()) continue;
    try {
      found->set(target, value);
    } catch (const py::cast_error&) {
      throw py::type_error("the option " + name + " cannot be " + std::string(py::repr(value)));
    }
  }
}

}  // namespace

Options ToOptions(const py::dict& given) {
  Options options;
  SetAll(options, kOptions, given);
  options.progress = [](const Progress& progress) {
    if (RunningCall* const call = RunningCall::Current()) call->OnProgress(progress);
  };
  return options;
}

CallOptions ToCallOptions(const py::dict& given) {
  CallOptions options;
  SetAll(options, kCallOptions, given);
  return options;
}

std::chrono::milliseconds ToSpan(py::handle seconds) {
  constexpr double kMost = 1e9;  // in seconds, 30 years
  const bool isSpan = py::hasattr(seconds, "total_seconds");
  const auto count =
      (isSpan ? py::object(seconds.attr("total_seconds")()) : py::reinterpret_borrow<py::object>(seconds))
          .cast<double>();
  if (!(count >= 0 && count <= kMost)) throw py::value_error("a time is a number of seconds, from 0 on");
  return std::chrono::milliseconds(std::llround(std::ceil(count * 1000)));
}

}  // namespace scriptwells::python
