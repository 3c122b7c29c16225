// Uploads a file for a script, and saves another that the script has made.
//   guide_files http://127.0.0.1:8080 HOME
// HOME is a directory with the server's upload scripts, such as that of `scriptwells serve --home HOME`.
#include <filesystem>
#include <fstream>
#include <iostream>

#include <scriptwells/scriptwells.h>

namespace {

void ShareFiles(const std::string& server, const std::string& home) {
  std::ofstream("notes.txt") << "call Rome";
  std::filesystem::create_directories("results");

  scriptwells::Options options;
  options.homeDirectory = home;  // where the upload scripts are, if not the installation's
  scriptwells::Session session(server, {"joe", "secret"}, options);

  std::string url = session
                        .Run("publish('loud.txt', parameters.notes.text().toUpperCase())",
                             {{"notes", scriptwells::File{"notes.txt"}}})
                        .As<std::string>();
  std::filesystem::path saved = session.Download(url, "results");
  std::cout << saved.filename().string() << ": " << std::ifstream(saved).rdbuf() << "\n";
}

void ShowProgress(const std::string& server, const std::string& home) {
  scriptwells::Options options;
  options.homeDirectory = home;
  scriptwells::Session session(server, {"joe", "secret"}, options);

  scriptwells::RunOptions run;
  run.progress = [](const scriptwells::Progress& progress) {
    if (progress.sending && progress.done == progress.total && !progress.file.empty())
      std::cout << std::filesystem::path(progress.file).filename().string() << " is sent\n";
  };
  session.Run("parameters.notes.size", {{"notes", scriptwells::File{"notes.txt"}}}, run);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string server = argc > 1 ? argv[1] : "http://127.0.0.1:8080";
    const std::string home = argc > 2 ? argv[2] : "";
    ShareFiles(server, home);
    ShowProgress(server, home);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
