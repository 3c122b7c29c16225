// Writes the manual pages and the completion of shells: write-manual DIRECTORY VERSION SHELLS DOCUMENT
//   DIRECTORY  what is written, as below the "share" of an installation; old pages in it are removed
//   SHELLS     the folder with the completion scripts
//   DOCUMENT   the Markdown document that becomes the page of section 7
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "tools/manual/completion.h"
#include "tools/manual/manual_page.h"
#include "tools/manual/markdown_page.h"
#include "tools/manual/object_names.h"
#include "tools/options/options.h"

namespace qv::cli {

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open() || file.bad()) throw std::runtime_error("cannot read " + path.string());
  return text;
}

void Write(const fs::path& path, const std::string& text) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path.string());
}

// That of SOURCE_DATE_EPOCH, so that two builds write the same; without the variable there is none.
std::string Date() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr || *epoch == '\0') return "";
  char* end = nullptr;
  const std::time_t seconds = std::strtoll(epoch, &end, 10);
  std::tm parts{};
  char text[16];
  if (*end != '\0' || ::gmtime_r(&seconds, &parts) == nullptr ||
      std::strftime(text, sizeof(text), "%Y-%m-%d", &parts) == 0)
    throw std::runtime_error("SOURCE_DATE_EPOCH is not a number of seconds: " + std::string(epoch));
  return text;
}

void WritePages(const fs::path& folder, const CommandText& program, const fs::path& document,
                const PageMark& mark) {
  fs::remove_all(folder);
  for (const CommandText* command : AllCommands(program))
    Write(folder / "man1" / (PageName(command->path) + ".1"), ManualPage(program, *command, mark));
  const std::string name = program.path + "-protocol";
  Write(folder / "man7" / (name + ".7"), MarkdownPage(Content(document), name, mark));
}

void WriteCompletion(const fs::path& folder, const CommandText& program, const fs::path& shells) {
  const std::vector<std::string> objects = ObjectNames();
  Write(folder / "bash-completion/completions/scriptwells",
        Content(shells / "scriptwells.bash") + BashTables(program, objects));
  Write(folder / "zsh/vendor-completions/_scriptwells",
        Content(shells / "_scriptwells") + ZshTables(program, objects));
  Write(folder / "fish/vendor_completions.d/scriptwells.fish",
        Content(shells / "scriptwells.fish") + FishTables(program, objects));
}

int WriteManual(const fs::path& folder, const std::string& version, const fs::path& shells,
                const fs::path& document) {
  CommandText program;
  ShowOptions([&](CLI::App& app) { program = CommandTextOf(app); });
  WritePages(folder / "man", program, document, {program.path + " " + version, Date()});
  WriteCompletion(folder, program, shells);
  return 0;
}

}  // namespace

}  // namespace qv::cli

int main(int argc, char** argv) {
  try {
    if (argc == 5) return qv::cli::WriteManual(argv[1], argv[2], argv[3], argv[4]);
    std::cerr << "usage: write-manual DIRECTORY VERSION SHELLS DOCUMENT\n";
  } catch (const std::exception& error) {
    std::cerr << "write-manual: " << error.what() << "\n";
  }
  return 1;
}
