// Script documents in a fresh directory, and the request that one of them should make.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "qvscriptwells/wide_string.h"

namespace qv {

class ScriptFiles {
 public:
  ScriptFiles() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qv_script_file_XXXXXX").string();
    directory_ = mkdtemp(pattern.data());
  }
  ~ScriptFiles() { std::filesystem::remove_all(directory_); }
  ScriptFiles(const ScriptFiles&) = delete;
  ScriptFiles& operator=(const ScriptFiles&) = delete;

  const std::filesystem::path& Directory() const { return directory_; }
  // The name in UTF-8 with "/", below the directory; gives the file's whole path.
  std::string Write(const std::string& name, const std::string& bytes) const {
    const std::filesystem::path path = directory_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }

 private:
  std::filesystem::path directory_;
};

// The current directory for one test.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const std::filesystem::path& path) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~CurrentDirectory() { std::filesystem::current_path(before_); }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;

 private:
  std::filesystem::path before_;
};

// The whole request for session "u1" with this text in its "Script" element, and this "parameters" element.
inline std::string RequestOfFile(const std::string& script, const std::string& parameters) {
  return "<SOAP-ENV:Envelope xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\">"
         "<SOAP-ENV:Body>"
         "<Execute xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
         "<usid xsi:type=\"xsd:string\">u1</usid>"
         "<Script xsi:type=\"xsd:string\">" +
         script + "</Script>" + parameters + "</Execute></SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

}  // namespace qv
