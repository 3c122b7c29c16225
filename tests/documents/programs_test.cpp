// The programs and scripts that documents name without showing what they print: against the service, and with
// a tape in place of it and of the network.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/documents/markdown.h"
#include "tests/documents/typing.h"

namespace qv::documents {
namespace {

struct Program {
  const char* file;
  const char* before;   // what its reader has prepared, in the shell
  const char* command;  // with the service on port 8080 and lent/ as its home directory
  std::string printed;  // "..." is any text
};

// Its library is loaded before others, such as AddressSanitizer's.
#define TAPED "ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" QV_TAPED_SESSIONS " "

const Program kPrograms[] = {
    // It starts the service itself: a program that only says that it has done so is enough for a tape.
    {"examples/demo.cpp",
     R"(program=build/demo/tools/scriptwells
        if [ -n "$SCRIPTWELLS_REPLAY" ]; then
          program=./no_service
          printf '#!/bin/sh\necho '\''{"url":"%s","home":"%s","control":"%s"}'\''\nexec cat\n' \
            http://127.0.0.1:8080 $PWD/lent http://127.0.0.1:8080/control > $program
          chmod +x $program
        fi)",
     "SCRIPTWELLS_PROGRAM=$program " TAPED "build/demo/examples/demo",
     ReadFile(QV_SOURCE_DIR "/tests/documents/demo.txt")},
    {"examples/first_call.cpp", "echo pages > report.pdf; mkdir results",
     "QV_REGISTRY=lent/serve.reg " TAPED
     "build/demo/examples/first_call http://127.0.0.1:8080 && cat results/out.txt",
     "42\nRome 2748109\ntext\n"},
    {"examples/exact_binding.cpp", "true", QV_EXACT_BINDING_ON_TAPE " http://127.0.0.1:8080", "42\n"},
    {"examples/late_binding.cpp",
     R"(printf '[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\%s]\n@="%s"\n' \
          'QvScriptwells.QvScriptwells\CLSID' '{01932093-F909-400b-B02E-7AEDABA33A36}' \
          'CLSID\{01932093-F909-400b-B02E-7AEDABA33A36}\InprocServer32' )" QV_TAPED_CLASS_LIBRARY
     " > late.reg",
     "QV_REGISTRY=late.reg build/demo/examples/late_binding http://127.0.0.1:8080", "42\n"},
    {"examples/one_more.xml", "true", "scriptwells run-document --local examples/one_more.xml -p a=int:41",
     "42\n"},
    {"examples/table.js", "true", "scriptwells run --local examples/table.js",
     "name born       salary\nJoe  1990-03-05    1.5\nAnn  1970-01-01      0\n"},
};

class Programs : public ::testing::TestWithParam<Program> {
 protected:
  static void ExpectPrinted(const UsedTapes& tapes) {
    const Program& program = GetParam();
    Command command{0, program.command, {}};
    std::istringstream lines(program.printed);
    for (std::string line; std::getline(lines, line);) command.output.push_back(line);
    Typist typist(tapes);
    const std::vector<Typed> typed =
        typist.Type({{0, "export PATH=$PWD/build/demo/tools:$PATH", {}},
                     {0, "scriptwells serve --port 8080 --home lent &", {"http://127.0.0.1:8080"}},
                     {0, program.before, {}},
                     command});
    ASSERT_EQ(typed.size(), 4U);
    EXPECT_EQ(typed[2].exit, 0) << typed[2].output;
    EXPECT_EQ(typed[3].exit, 0) << typed[3].output;
    EXPECT_TRUE(Agrees(command, typed[3])) << typed[3].output;
    EXPECT_EQ(typist.ProcessesLeft(), 0) << "processes are left";
    EXPECT_EQ(typist.TemporaryFilesLeft(), "") << "files are left";
  }
};

TEST_P(Programs, PrintWhatTheyShould) {
  ExpectPrinted(RecordedTape(GetParam().file));
}

TEST_P(Programs, PrintTheSameOnTape) {
  ExpectPrinted({{}, TapeOf(GetParam().file)});
}

std::string NameOf(const testing::TestParamInfo<Program>& program) {
  return TestName({program.param.file, program.index});
}

INSTANTIATE_TEST_SUITE_P(Documents, Programs, ::testing::ValuesIn(kPrograms), NameOf);

}  // namespace
}  // namespace qv::documents
