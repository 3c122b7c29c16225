// Fails in four ways, and shows what each error knows.
//   guide_errors http://127.0.0.1:8080
#include <iostream>

#include <scriptwells/scriptwells.h>

namespace {

void RunAndReport(const std::string& server, const std::string& script) {
  scriptwells::Options options;
  options.totalTimeout = std::chrono::seconds(3);
  try {
    scriptwells::Session session(server, {"joe", "secret"}, options);
    session.Run(script);
  } catch (const scriptwells::ScriptError& fault) {  // the script threw
    std::cout << "number " << *fault.number() << ", line " << fault.details().line << ": " << fault.message()
              << "\n";
  } catch (const scriptwells::TimeoutError& error) {  // phase() says where
    std::cout << "too slow: " << ToString(error.phase()) << "\n";
  } catch (const scriptwells::Error& error) {  // all else
    std::cout << ToString(error.phase()) << "\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string server = argc > 1 ? argv[1] : "http://127.0.0.1:8080";
    RunAndReport(server, "throw new ScriptError(5, 'no such customer')");
    RunAndReport(server, "for (;;) ;");
    RunAndReport(server, "null");
    RunAndReport("http://127.0.0.1:1", "6 * 7");
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "failed: " << error.what() << "\n";
    return 1;
  }
}
