// In place of the program's libraries: one of another version.
extern "C" __attribute__((visibility("default"))) int ScriptwellsRunCommand(const void*) {
  return -1;
}
extern "C" __attribute__((visibility("default"))) const void* ScriptwellsXmlParts(const char*) {
  return nullptr;
}
