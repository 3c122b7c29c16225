#include "torture/trial.h"

#include <fcntl.h>

#include <cstdio>
#include <memory>
#include <new>

#include "fixtures/refused_memory.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv::torture {
namespace {

struct Outcome {
  HRESULT code;
  bool right;  // whether a success returned what it should
};

constexpr int kColdCalls = 5;  // the same refusal again, before anything has worked
constexpr std::u16string_view kXmlRefused = u"Xerces initialization failed.";
constexpr int kWarmCalls = 4;  // the same, with a call between that works

// What a process holds, for comparison.
struct Holdings {
  long blocks = 0;
  long files = 0;
};

Holdings HoldingsNow() {
  constexpr int kMostFiles = 128;
  Holdings now;
  now.blocks = LiveBlocks();
  for (int file = 0; file < kMostFiles; ++file) now.files += fcntl(file, F_GETFD) != -1 ? 1 : 0;
  return now;
}

// What is kept for later calls grows at first, a leak always by the same.
long Growth(const Holdings* holdings, int count, long Holdings::*field) {
  const long last = holdings[count - 1].*field - holdings[count - 2].*field;
  return last > 0 && holdings[count - 2].*field - holdings[count - 3].*field == last ? last : 0;
}

class Runner {
 public:
  Runner(const Trial& trial, Gate& gate, TrialReport* report) : trial_(trial), gate_(gate), report_(report) {}

  void Run() {
    const std::shared_ptr<void> hold = trial_.hold ? HoldXmlLibrary() : nullptr;
    report_->step = "preparation";
    const std::unique_ptr<Scene> scene = trial_.flow->prepare();
    scene_ = scene.get();
    if (Cold() && Warm()) report_->verdict = xmlRefused_ ? Verdict::kXmlRefused : Verdict::kGood;
    report_->step = "end";
  }

 private:
  bool Fail(Verdict verdict, const char* details) {
    report_->verdict = verdict;
    static_cast<void>(std::snprintf(report_->details, sizeof report_->details, "%s", details));
    return false;
  }
  bool Fail(Verdict verdict, HRESULT code) {
    char text[40];
    static_cast<void>(std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code)));
    return Fail(verdict, text);
  }

  bool Cold() {
    Holdings held[kColdCalls];
    for (int i = 0; i < kColdCalls; ++i) {
      if (!RefusedCall(i == 0 ? "the refused call" : "the refused call, repeated")) return false;
      held[i] = HoldingsNow();
    }
    return Works("the next call") && NoGrowth(held, kColdCalls);
  }

  bool Warm() {
    Holdings held[kWarmCalls];
    for (Holdings& holdings : held) {
      if (!RefusedCall("a later refused call") || !Works("a later call")) return false;
      holdings = HoldingsNow();
    }
    return NoGrowth(held, kWarmCalls);
  }

  bool NoGrowth(const Holdings* held, int count) {
    if (Growth(held, count, &Holdings::files) > 0) return Fail(Verdict::kOpenFiles, report_->step);
    const long blocks = Growth(held, count, &Holdings::blocks);
    if (blocks == 0) return true;
    char text[80];
    static_cast<void>(std::snprintf(text, sizeof text, "%ld blocks a call, step: %s", blocks, report_->step));
    return Fail(Verdict::kLeak, text);
  }

  bool RefusedCall(const char* step) {
    report_->step = step;
    bool odd = false;
    gate_.Arm(trial_.refusal);
    const Outcome outcome = Call(&odd);
    const long seen = gate_.Disarm();
    if (!reported_) report_->seen = seen, report_->code = outcome.code;
    reported_ = true;
    if (odd) return Fail(Verdict::kOddException, step);
    if (Succeeded(outcome.code) && !outcome.right) return Fail(Verdict::kWrongSuccess, step);
    if (Failed(outcome.code) && seen < trial_.refusal.at)
      return XmlIsRefused() || Fail(Verdict::kFailedUnasked, outcome.code);
    if (Failed(outcome.code) && gate_.IsPassing(trial_.refusal.kind))
      return Fail(Verdict::kTransientFails, outcome.code);
    const std::string litter = Failed(outcome.code) ? scene_->Litter() : "";
    return litter.empty() || Fail(Verdict::kLitter, litter.c_str());
  }

  bool Works(const char* step) {
    report_->step = step;
    bool odd = false;
    const Outcome outcome = Call(&odd);
    if (Failed(outcome.code)) return XmlIsRefused() || Fail(Verdict::kNextCallFails, outcome.code);
    return outcome.right || Fail(Verdict::kNextCallFails, "wrong result");
  }

  // The call failed since the XML library could not be started earlier. That ends the trial, and well.
  bool XmlIsRefused() const { return xmlRefused_; }

  Outcome Call(bool* odd) {
    try {
      return {S_OK, scene_->Call()};
    } catch (const _com_error& error) {
      xmlRefused_ = xmlRefused_ || error.Description().view() == kXmlRefused;
      return {error.Error(), false};
    } catch (const EQvException&) {
      return {DISP_E_EXCEPTION, false};
    } catch (const std::bad_alloc&) {
      return {E_OUTOFMEMORY, false};
    } catch (...) {
      *odd = true;
      return {E_UNEXPECTED, false};
    }
  }

  const Trial& trial_;
  Gate& gate_;
  TrialReport* report_;
  Scene* scene_ = nullptr;
  bool reported_ = false;
  bool xmlRefused_ = false;
};

}  // namespace

const char* VerdictText(Verdict verdict) {
  static const char* const kTexts[] = {"the process ended",
                                       "good",
                                       "the XML library is refused",
                                       "S_OK with a wrong result",
                                       "fails with nothing refused",
                                       "an exception that no header tells of",
                                       "the next call fails",
                                       "an interruption makes it fail",
                                       "open files",
                                       "leak",
                                       "leaves something behind"};
  return kTexts[static_cast<int>(verdict)];
}

void RunTrial(const Trial& trial, Gate& gate, TrialReport* report) {
  Runner(trial, gate, report).Run();
}

}  // namespace qv::torture
