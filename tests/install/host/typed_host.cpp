// A program that is linked with the whole library and uses its typed headers.
#include <qvscriptwells/qvscriptwells.h>
#include <qvscriptwells/registry.h>

#include <cstdio>

int main() {
  const qv::IUrlPtr url = qv::CreateUrl();
  qv::ThrowIfFailed(url->put_UrlCaption(u"caption"));
  qv::WideString caption;
  qv::ThrowIfFailed(url->get_UrlCaption(&caption));
  std::printf("%s\n", qv::ToUtf8(caption).c_str());
  std::printf("home %s\n", qv::ToUtf8(qv::ReadRegistryValue(qv::kHomeDirectoryKey)).c_str());
  return 0;
}
