// Sends values of each kind, and reads answers as the types that a program wants.
//   guide_values http://127.0.0.1:8080
#include <iostream>
#include <map>
#include <optional>
#include <type_traits>

#include <scriptwells/scriptwells.h>

namespace {

void SendValues(scriptwells::Session& session) {
  const scriptwells::Arguments arguments = {
      {"name", "Joe"},
      {"when", scriptwells::DateTime::Parse("2024-03-05T10:15:30")},
      {"wait", scriptwells::Duration::From(std::chrono::hours(26))},
      {"small", scriptwells::Short(5)},
  };
  std::cout << session.Run("parameterList.map(p => p.name + ': ' + p.type).join(', ')", arguments) << "\n";

  const std::map<std::string, int> prices = {{"tea", 2}, {"coffee", 3}};
  std::cout << session.Run("parameters.tea + parameters.coffee", prices) << "\n";
}

void ReadValues(scriptwells::Session& session) {
  const scriptwells::Value answer = session.Run("typed.date('2024-03-05')");
  const auto date = answer.As<scriptwells::Date>();
  const auto midnight = answer.As<scriptwells::DateTime>();
  const auto point = answer.As<std::chrono::system_clock::time_point>();
  std::cout << ToString(answer.type()) << " " << date << " " << midnight << " "
            << std::chrono::duration_cast<std::chrono::hours>(point.time_since_epoch()).count() << "\n";

  try {
    session.Run("1.5").As<int>();
  } catch (const scriptwells::ConversionError& error) {
    std::cout << error.what() << "\n";
  }

  const scriptwells::Value empty = session.Run("typed.long(5)");  // a long does not arrive
  std::cout << empty.ValueOr<long>(-1) << " " << empty.As<std::optional<long>>().has_value() << "\n";
}

void VisitValue(scriptwells::Session& session) {
  session.Run("'a text'").Visit([](const auto& content) {
    if constexpr (std::is_same_v<std::decay_t<decltype(content)>, std::string>)
      std::cout << content.size() << " bytes\n";
  });
}

void ShowLosses() {
  for (const std::string& loss : scriptwells::LossesOnTheWire(1234567.0)) std::cout << loss << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    scriptwells::Session session(argc > 1 ? argv[1] : "http://127.0.0.1:8080", {"joe", "secret"});
    SendValues(session);
    ReadValues(session);
    VisitValue(session);
    ShowLosses();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
