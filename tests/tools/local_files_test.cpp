#include "tools/local_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "tests/tools/fresh_directory.h"
#include "tools/failure.h"
#include "tools/file_parameter.h"
#include "tools/parameter_text.h"

namespace qv::cli {
namespace {

// What `call` is refused with, or "accepted".
std::string Refusal(const std::function<void()>& call) {
  try {
    call();
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

class LocalFiles : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& content = "text") {
    const std::string path = folder_.Path() + "/" + name;
    std::ofstream(path) << content;
    return path;
  }
  // The current directory for the life of one object.
  class Inside {
   public:
    explicit Inside(const std::string& directory) : before_(std::filesystem::current_path()) {
      std::filesystem::current_path(directory);
    }
    ~Inside() { std::filesystem::current_path(before_); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

   private:
    std::filesystem::path before_;
  };
  testing::FreshDirectory folder_;
};

TEST_F(LocalFiles, SizeOfAReadableFileIsTold) {
  EXPECT_EQ(CheckReadable(Write("a", "12345"), "file"), 5);
  EXPECT_EQ(CheckReadable(Write("b", ""), "file"), 0);
}

TEST_F(LocalFiles, WhatCannotBeReadIsRefusedWithTheReason) {
  const std::string missing = folder_.Path() + "/missing";
  EXPECT_EQ(Refusal([&] { CheckReadable(missing, "file"); }),
            "cannot read the file " + missing + ": No such file or directory");
  EXPECT_EQ(Refusal([&] { CheckReadable(folder_.Path(), "file"); }),
            "cannot read the file " + folder_.Path() + ": Is a directory");
  const std::string pipe = folder_.Path() + "/pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Refusal([&] { CheckReadable(pipe, "file"); }),
            "cannot read the file " + pipe + ": Not a regular file");
}

TEST_F(LocalFiles, NamesThatAreNoneAreRefused) {
  EXPECT_EQ(Refusal([] { AbsolutePath("", "file"); }), "the file has no name");
  EXPECT_EQ(Refusal([] { AbsolutePath(std::string("a\0b", 3), "file"); }),
            std::string("cannot read the file a\0b: No such file or directory", 51));
}

TEST_F(LocalFiles, TargetDirectoryBecomesAbsolute) {
  std::filesystem::create_directory(folder_.Path() + "/sub");
  const Inside inside(folder_.Path());
  EXPECT_EQ(CheckTargetDirectory(""), folder_.Path());
  EXPECT_EQ(CheckTargetDirectory("."), folder_.Path());
  EXPECT_EQ(CheckTargetDirectory("sub//"), folder_.Path() + "/sub");
  EXPECT_EQ(CheckTargetDirectory("/"), "/");
}

TEST_F(LocalFiles, TargetThatIsNoDirectoryIsRefused) {
  const std::string missing = folder_.Path() + "/missing";
  EXPECT_EQ(Refusal([&] { CheckTargetDirectory(missing); }),
            "cannot save into " + missing + ": No such file or directory");
  const std::string file = Write("file");
  EXPECT_EQ(Refusal([&] { CheckTargetDirectory(file); }), "cannot save into " + file + ": Not a directory");
}

// The kernel's own directories take no files, not even from the superuser, but the words differ.
TEST_F(LocalFiles, TargetThatCannotBeWrittenIsRefused) {
  EXPECT_EQ(Refusal([] { CheckTargetDirectory("/proc/self"); }).rfind("cannot save into /proc/self: ", 0),
            0u);
}

TEST_F(LocalFiles, TargetThatTheLibraryWouldMisreadIsRefused) {
  const std::string odd = folder_.Path() + "/a\\b";
  std::filesystem::create_directory(odd);
  EXPECT_EQ(Refusal([&] { CheckTargetDirectory(odd); }),
            "cannot save into " + odd + ": its path holds '\\', which the library takes for '/'");
  EXPECT_EQ(Refusal([&] { CheckTargetDirectory(folder_.Path() + "/\xFF"); }),
            "the target directory's path is not valid UTF-8");
}

TEST_F(LocalFiles, FileParameterHoldsTheAbsolutePath) {
  Write("a b:c=d.txt");
  const Inside inside(folder_.Path());
  const ScriptParameter parameter = ParseParameter("doc=file:a b:c=d.txt");
  EXPECT_EQ(parameter.name, "doc");
  EXPECT_TRUE(IsFileParameter(parameter.value));
  EXPECT_TRUE(parameter.notes.empty());
  const IAttachedFilePtr file = As<IAttachedFile>(parameter.value.Object());
  ASSERT_TRUE(file);
  WideString name;
  ASSERT_EQ(file->get_Filename(&name), S_OK);
  EXPECT_EQ(ToUtf8(name), folder_.Path() + "/a b:c=d.txt");
}

TEST_F(LocalFiles, FileParameterIsCheckedAtOnce) {
  const std::string missing = folder_.Path() + "/missing";
  EXPECT_EQ(Refusal([&] { ParseParameter("doc=file:" + missing); }),
            "parameter 'doc': cannot read the file " + missing + ": No such file or directory");
  EXPECT_EQ(Refusal([] { ParseParameter("doc=file:"); }), "parameter 'doc': the file has no name");
  const std::string odd = Write("a\\b");
  EXPECT_EQ(Refusal([&] { ParseParameter("doc=file:" + odd); }),
            "parameter 'doc': the path " + odd +
                " holds '\\', which the library takes for '/'; rename or copy the file");
}

TEST_F(LocalFiles, OtherValuesAreNoFiles) {
  EXPECT_FALSE(IsFileParameter(ParseParameter("a=string:/etc/passwd").value));
  EXPECT_FALSE(IsFileParameter(ParseParameter("a=duration:P1D").value));
  EXPECT_FALSE(IsFileParameter(Variant()));
}

}  // namespace
}  // namespace qv::cli
