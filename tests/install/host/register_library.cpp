// Registers the library of classes that its argument names.
#include <dlfcn.h>
#include <qvscriptwells/result_codes.h>

int main(int argc, char** argv) {
  void* const library = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (library == nullptr) return 1;
  const auto enter = reinterpret_cast<qv::HRESULT (*)()>(dlsym(library, "DllRegisterServer"));
  return enter != nullptr && enter() == qv::S_OK ? 0 : 2;
}
