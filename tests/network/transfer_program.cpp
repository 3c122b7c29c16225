// transfer_program down SERVER URL DIRECTORY | up SERVER FILE: one transfer of the connection model. Says how
// it went and the most memory that this process ever had resident, in kilobytes.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include "qvscriptwells/qvscriptwells.h"

namespace {

std::string Words(qv::HRESULT code) {
  qv::ErrorInfo info;
  if (code == qv::S_OK) return "ok";
  return qv::GetErrorInfo(&info) ? qv::ToUtf8(info.description) : "failed";
}

// What getrusage says is no use here: it counts the parent's memory from before the program was started.
long PeakKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
  return -1;
}

qv::HRESULT Down(qv::IConnectionModel* model, const char* url, const char* directory) {
  qv::WideString path;
  return model->DownloadFile(qv::FromUtf8(url), qv::FromUtf8(directory), &path);
}

qv::HRESULT Up(qv::IConnectionModel* model, const char* file) {
  const qv::IParametersPtr list = qv::CreateParameters();
  const qv::IAttachedFilePtr attached = qv::CreateAttachedFile(qv::FromUtf8(file));
  qv::ThrowIfFailed(list->Add(u"f", qv::Variant::FromObject(attached.get()), nullptr));
  qv::Variant result;
  return model->Execute(u"JavaScript", u"1", list.get(), &result);
}

}  // namespace

int main(int count, char** words) {
  if (count < 4) return 2;
  const qv::IConnectionModelPtr model = qv::CreateConnectionModel(qv::FromUtf8(words[2]), u"", nullptr);
  model->SetUSID(u"s1");
  const bool isDown = std::strcmp(words[1], "down") == 0 && count == 5;
  const qv::HRESULT code = isDown ? Down(model.get(), words[3], words[4]) : Up(model.get(), words[3]);
  std::printf("%s\n%ld\n", Words(code).c_str(), PeakKilobytes());
  return 0;
}
