// Classes that come from shared libraries which the registry names.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "com/asked_object.h"
#include "com/class_library.h"
#include "fixtures/environment.h"
#include "fixtures/loaded_files.h"
#include "fixtures/shown_value.h"
#include "fixtures/temporary_directory.h"
#include "fixtures/waiting_record.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/registry.h"

namespace qv {
namespace {

constexpr Guid kUnknownInterface = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");

HRESULT MakeNothing(const Guid&, void**) {
  return E_ACCESSDENIED;
}

std::string LibraryFile(const char* kind) {
  return std::string(CLASS_LIBRARY_DIR "/libclass_library_") + kind + ".so";
}

class ClassLibraries : public testing::Test {
 protected:
  ClassLibraries() { ClearErrorInfo(); }
  ~ClassLibraries() override {
    CoFreeUnusedLibraries();
    ClearErrorInfo();
  }

  static void Name(const std::string& path, const char16_t* key = kKeyOfLibrary) {
    WriteRegistryValue(key, FromUtf8(path));
  }
  static HRESULT Create(IUnknownPtr& object, const Guid& classId = kClassOfLibrary) {
    return CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, Put(object));
  }
  // The failure of a creation as "code message".
  static std::string Refusal() {
    IUnknownPtr object;
    const std::string code = ShownCode(Create(object));
    EXPECT_EQ(object, nullptr);
    return code + " " + TakenWords();
  }
  void ExpectUnloaded() {
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsMapped(sound_));
  }

  // How the refusal of a class begins that no file of the registry knows.
  std::string Unregistered() const {
    return "0x80040154 The registry names no library for the class {5B7F0C1E-3D52-4E8A-9C61-2F0A8D4B6E11}; "
           "looked in " +
           directory_.Path("classes.reg") + " (not there), " + directory_.Path("none/quorvane/registry.reg") +
           " (not there), /";
  }

  TemporaryDirectory directory_;
  EnvironmentVariable named_{"QV_REGISTRY", directory_.Path("classes.reg").c_str()};
  EnvironmentVariable config_{"XDG_CONFIG_HOME", directory_.Path("none").c_str()};
  const std::string sound_ = LibraryFile("sound");
};

TEST_F(ClassLibraries, ObjectComesFromTheLibraryThatTheRegistryNames) {
  Name(sound_);
  EXPECT_FALSE(IsMapped(sound_));
  IUnknownPtr object;
  ASSERT_EQ(Create(object), S_OK);
  EXPECT_TRUE(IsMapped(sound_));
}

TEST_F(ClassLibraries, UnusedLibraryLeavesTheMemory) {
  Name(sound_);
  for (int round = 0; round < 3; ++round) {
    IUnknownPtr object;
    ASSERT_EQ(Create(object), S_OK);
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsMapped(sound_));
    object.reset();
    EXPECT_TRUE(IsMapped(sound_));
    ExpectUnloaded();
  }
}

TEST_F(ClassLibraries, ClassObjectKeepsItsLibrary) {
  Name(sound_);
  IClassFactoryPtr factory;
  ASSERT_EQ(CoGetClassObject(kClassOfLibrary, CLSCTX_ALL, IClassFactory::kIid, Put(factory)), S_OK);
  CoFreeUnusedLibraries();
  EXPECT_TRUE(IsMapped(sound_));
  EXPECT_EQ(factory->LockServer(true), S_OK);
  EXPECT_EQ(factory->LockServer(false), S_OK);
  factory.reset();
  ExpectUnloaded();
}

TEST_F(ClassLibraries, LibraryUnderTwoPathsIsOne) {
  const std::string link = directory_.Path("link.so");
  std::filesystem::create_symlink(sound_, link);
  Name(sound_);
  IUnknownPtr first;
  ASSERT_EQ(Create(first), S_OK);
  Name(link);
  IUnknownPtr second;
  ASSERT_EQ(Create(second), S_OK);
  first.reset();
  CoFreeUnusedLibraries();
  EXPECT_TRUE(IsMapped(sound_));
  second.reset();
  ExpectUnloaded();
}

TEST_F(ClassLibraries, RecordsOfTheLibraryReachTheHost) {
  Name(sound_);
  IUnknownPtr object;
  EXPECT_EQ(CoCreateInstance(kClassOfLibrary, nullptr, CLSCTX_ALL, kUnknownInterface, Put(object)),
            E_NOINTERFACE);
  EXPECT_EQ(TakenWords(), "words of the class library");
}

TEST_F(ClassLibraries, CreatorGoesBeforeTheLibrary) {
  Name(sound_);
  RegisterClassCreator(kClassOfLibrary, MakeNothing);
  IUnknownPtr object;
  EXPECT_EQ(Create(object), E_ACCESSDENIED);
  RegisterClassCreator(kClassOfLibrary, nullptr);
  EXPECT_EQ(Create(object), S_OK);
}

TEST_F(ClassLibraries, OuterObjectReachesTheClassObject) {
  Name(sound_);
  AskedObject outer;
  IUnknownPtr object;
  EXPECT_EQ(CoCreateInstance(kClassOfLibrary, &outer, CLSCTX_ALL, IUnknown::kIid, Put(object)), S_OK);
  ASSERT_NE(object, nullptr);
}

TEST_F(ClassLibraries, UnnamedClassIsNotRegistered) {
  EXPECT_EQ(Refusal().rfind(Unregistered(), 0), 0U) << Refusal();
}

TEST_F(ClassLibraries, ClassThatTheLibraryDoesNotHaveIsRefusedByIt) {
  Name(sound_, kMissingKey);
  IUnknownPtr object;
  EXPECT_EQ(Create(object, kMissingClass), CLASS_E_CLASSNOTAVAILABLE);
  ExpectUnloaded();
}

TEST_F(ClassLibraries, MissingFileIsReported) {
  Name("/nowhere/x.so");
  EXPECT_EQ(Refusal(), "0x800401F8 /nowhere/x.so: cannot open shared object file: No such file or directory");
}

TEST_F(ClassLibraries, PathsAreAbsolute) {
  for (const std::string path : {"libclass_library_sound.so", "./x.so", "c:\\x.dll", ""}) {
    Name(path);
    EXPECT_EQ(Refusal(), "0x800401F8 The library \"" + path + "\" is not named by an absolute path");
  }
}

TEST_F(ClassLibraries, FileThatIsNotALibraryIsReported) {
  const std::string path = directory_.Write("text.so", std::string(4096, 't'));
  Name(path);
  EXPECT_EQ(Refusal(), "0x800401F8 " + path + ": invalid ELF header");
}

// The system would map what is there, and the program would die where the rest is missing.
TEST_F(ClassLibraries, FileThatIsCutOffIsReported) {
  std::ifstream file(sound_, std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  ASSERT_GT(whole.size(), 5000U);
  for (const std::size_t size : {std::size_t{64}, std::size_t{100}, std::size_t{5000}}) {
    const std::string path = directory_.Write("cut.so", whole.substr(0, size));
    Name(path);
    EXPECT_EQ(Refusal(), "0x800401F8 " + path + ": The file is cut off") << size;
  }
  const std::string path = directory_.Write("cut.so", whole.substr(0, 30));
  Name(path);
  EXPECT_EQ(Refusal(), "0x800401F8 " + path + ": file too short");
}

TEST_F(ClassLibraries, PipeIsNotWaitedFor) {
  const std::string path = directory_.Path("pipe.so");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  Name(path);
  EXPECT_EQ(Refusal(), "0x800401F8 " + path + ": Not a regular file");
}

TEST_F(ClassLibraries, MissingEntryPointsAreReported) {
  const std::pair<const char*, const char*> rows[] = {
      {"no_main", "DllMain"}, {"no_class_object", "DllGetClassObject"}, {"no_unload", "DllCanUnloadNow"}};
  for (const auto& [kind, entryPoint] : rows) {
    const std::string path = LibraryFile(kind);
    Name(path);
    EXPECT_EQ(Refusal(), "0x800401F9 " + path + ": it has no entry point " + entryPoint);
    EXPECT_FALSE(IsMapped(path));
  }
}

TEST_F(ClassLibraries, LibraryThatRefusesToStartIsClosed) {
  const std::string path = LibraryFile("refuses");
  Name(path);
  EXPECT_EQ(Refusal(), "0x800401F9 " + path + ": it refused to start");
  EXPECT_FALSE(IsMapped(path));
  EXPECT_EQ(Refusal(), "0x800401F9 " + path + ": it refused to start");
}

TEST_F(ClassLibraries, StaleRecordDoesNotLookLikeTheReason) {
  LeaveStaleRecord();
  EXPECT_EQ(Refusal().rfind(Unregistered(), 0), 0U) << Refusal();
}

TEST_F(ClassLibraries, NullTargetIsRefused) {
  EXPECT_EQ(CoGetClassObject(kClassOfLibrary, CLSCTX_ALL, IClassFactory::kIid, nullptr), E_POINTER);
}

TEST_F(ClassLibraries, ThreadsMayCreateAtOnce) {
  Name(sound_);
  std::vector<std::thread> threads;
  std::vector<HRESULT> codes(8, E_FAIL);
  threads.reserve(codes.size());
  for (HRESULT& code : codes)
    threads.emplace_back([&code] {
      IClassFactoryPtr factory;
      code = CoGetClassObject(kClassOfLibrary, CLSCTX_ALL, IClassFactory::kIid, Put(factory));
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(codes, std::vector<HRESULT>(8, S_OK));
  ExpectUnloaded();
}

TEST_F(ClassLibraries, ProgramsOwnClassNeedsNoRegistry) {
  IUnknownPtr object;
  EXPECT_EQ(Create(object, CLSID_QvScriptwells), S_OK);
  EXPECT_NE(object, nullptr);
}

}  // namespace
}  // namespace qv
