// What optimised builds have against attacks through memory errors, read from the binaries themselves.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "fixtures/output_of.h"

namespace {

bool Has(const std::string& text, const char* piece) {
  return text.find(piece) != std::string::npos;
}

struct Binary {
  const char* name;
  const char* path;
  bool isProgram;
};
void PrintTo(const Binary& binary, std::ostream* out) {
  *out << binary.name;
}

class Hardening : public testing::TestWithParam<Binary> {
 protected:
  static std::string ReadElf(const char* options) {
    return qv::OutputOf(std::string("LC_ALL=C readelf -W ") + options + " '" + GetParam().path + "'").text;
  }
};

TEST_P(Hardening, CodeMayLieAnywhere) {
  EXPECT_TRUE(Has(ReadElf("-h"), "DYN ("));
  if (GetParam().isProgram) {
    EXPECT_TRUE(Has(ReadElf("-d"), "PIE"));
  }
}

TEST_P(Hardening, TablesOfCallsAreReadOnly) {
  EXPECT_TRUE(Has(ReadElf("-l"), "GNU_RELRO"));
  const std::string dynamic = ReadElf("-d");
  EXPECT_TRUE(Has(dynamic, "BIND_NOW") || Has(dynamic, "NOW")) << dynamic;
}

TEST_P(Hardening, StackIsGuardedAndNotExecutable) {
  EXPECT_TRUE(Has(ReadElf("--dyn-syms"), "__stack_chk_fail"));
  const std::string headers = ReadElf("-l");
  const std::size_t stack = headers.find("GNU_STACK");
  ASSERT_NE(stack, std::string::npos);
  EXPECT_FALSE(Has(headers.substr(stack, headers.find('\n', stack) - stack), "RWE"));
}

// One that is in all of them: numbers are printed into a buffer of known size.
TEST_P(Hardening, CallsOfTheCLibraryAreChecked) {
  EXPECT_TRUE(Has(ReadElf("--dyn-syms"), "printf_chk"));
}

#ifdef CF_PROTECTION
// Functions whose address is taken begin with a mark, without which the processor may refuse the jump.
TEST_P(Hardening, TargetsOfJumpsAreMarked) {
  EXPECT_TRUE(
      Has(qv::OutputOf(std::string("LC_ALL=C objdump -d --no-show-raw-insn '") + GetParam().path + "'").text,
          "endbr64"));
}
#endif

constexpr Binary kBinaries[] = {
    {"ClassLibrary", SHARED_LIBRARY, false},      {"Scriptwells", SCRIPTWELLS, true},
    {"CommandsLibrary", COMMANDS_LIBRARY, false}, {"ServiceLibrary", SERVICE_LIBRARY, false},
    {"ScriptWorker", SCRIPT_WORKER, true},
};
INSTANTIATE_TEST_SUITE_P(Binaries, Hardening, testing::ValuesIn(kBinaries),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
