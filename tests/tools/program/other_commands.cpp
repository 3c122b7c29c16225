// In place of the program's library of commands: one of another version.
extern "C" __attribute__((visibility("default"))) int ScriptwellsRunCommand(const void*) {
  return -1;
}
