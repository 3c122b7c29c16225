// What a program does with the C++ library, flow by flow. The library holds the XML library itself, from the
// first session on, which is made with nothing refused.
#include <fstream>
#include <sstream>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/xml_library_hold.h"
#include "scriptwells/scriptwells.h"
#include "torture/scene.h"

namespace qv::torture {
namespace {

std::string ServerName() {
  return "http://127.0.0.1:" + std::to_string(CurrentStage().port);
}

// The failures that trials know: an error of the library is a failed call, std::bad_alloc stays.
template <class Act>
bool Tried(const Act& act) {
  try {
    return act();
  } catch (const scriptwells::Error&) {
    _com_raise_error(E_FAIL);
  }
}

// What needs no server. Also what the start of the process ends with.
class ValuesScene : public Scene {
 public:
  bool Call() override {
    return Tried([] {
      const scriptwells::Value when = scriptwells::Parse("datetime", "2024-03-05T10:15:30.007");
      const scriptwells::Value span(scriptwells::Duration::Parse("P1DT2H"));
      return when.ToString() + span.ToString() == "2024-03-05T10:15:30.007P1DT2H" &&
             scriptwells::Value("a text that is longer than a short one").ToJson().size() == 40 &&
             LossesOnTheWire(when).size() == 1 &&
             when.As<scriptwells::TimePoint>() > scriptwells::TimePoint();
    });
  }
};

// Each kind of value, through a session that is there already.
class RunScene : public Scene {
 public:
  bool Call() override {
    return Tried([this] {
      const scriptwells::Arguments arguments = {{"b", true},
                                                {"i", 3},
                                                {"l", 4L},
                                                {"d", 0.25},
                                                {"t", "a<b & c"},
                                                {"when", scriptwells::DateTime::Parse("2024-03-05T10:15:30")},
                                                {"span", scriptwells::Duration::Parse("P1DT2H")}};
      return session_.Run("'done'", arguments).As<std::string>() == "done";
    });
  }

 protected:
  scriptwells::Session session_ = scriptwells::Session::Adopt(ServerName(), "u1");
};

class TableScene : public RunScene {
 public:
  bool Call() override {
    return Tried([this] {
      const scriptwells::Table table = session_.Run("give a table").AsTable();
      int sum = 0;
      for (const auto& row : table) sum += row[0].As<int>();
      return sum == 5 + 6 && !table.ToCsv().empty() && !table.ToJson().empty() && !table.ToString().empty();
    });
  }
};

class DurationScene : public RunScene {
 public:
  bool Call() override {
    return Tried([this] { return session_.Run("give a duration").As<scriptwells::Duration>().days == 1; });
  }
};

// A fault keeps its number, or the call fails in another way.
class FaultScene : public RunScene {
 public:
  bool Call() override {
    return Tried([this] {
      try {
        session_.Run("give a fault");
        return false;
      } catch (const scriptwells::ScriptError& fault) {
        if (fault.number() != 5U) throw;
        return true;
      }
    });
  }
};

// What a listener gets costs most of the memory of a call.
class ListenerScene : public Scene {
 public:
  bool Call() override {
    seen_ = 0;
    return Tried([this] { return session_.Run("'done'").As<std::string>() == "done" && seen_ == 1; });
  }

 private:
  scriptwells::Options Listening() {
    scriptwells::Options options;
    options.listener = [this](const scriptwells::Exchange&) { ++seen_; };
    return options;
  }

  int seen_ = 0;
  scriptwells::Session session_ = scriptwells::Session::Adopt(ServerName(), "u1", Listening());
};

class UploadScene : public RunScene {
 public:
  UploadScene() : file_{CurrentStage().directory + "/sent.txt"} { std::ofstream(file_.path) << "content"; }
  bool Call() override {
    return Tried([this] { return session_.Run("'done'", {{"doc", file_}}).As<std::string>() == "done"; });
  }

 private:
  const scriptwells::File file_;
};

// From the opening to the close.
class LifeScene : public RunScene {
 public:
  bool Call() override {
    return Tried([] {
      scriptwells::Session session(ServerName(), {"joe", "secret"});
      const bool isRight = session.Run("'done'").As<std::string>() == "done";
      session.Close();
      return isRight;
    });
  }
};

}  // namespace

const std::vector<Flow>& Flows() {
  static const std::vector<Flow> flows = {
      {"values", Make<ValuesScene>, false}, {"run", Make<RunScene>, false},
      {"table", Make<TableScene>, false},   {"duration", Make<DurationScene>, false},
      {"fault", Make<FaultScene>, false},   {"listener", Make<ListenerScene>, false},
      {"upload", Make<UploadScene>, false}, {"life", Make<LifeScene>, false},
  };
  return flows;
}

std::shared_ptr<void> HoldXmlLibrary() {
  return std::make_shared<XmlLibraryHold>();
}

bool CanHoldXmlLibrary() {
  return true;
}

std::string RegistryText(const std::string& home) {
  return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n";
}

}  // namespace qv::torture
