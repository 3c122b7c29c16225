// A server made by gSOAP. With MENDED it has the changes that `scriptwells check` names.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdio>
#include <string>

#include "Scripts.nsmap"
#include "soapH.h"

#ifdef MENDED
#define SW(name) NS2__##name
#define SW2(before, name) before##NS2__##name
#else
#define SW(name) sw__##name
#define SW2(before, name) before##sw__##name
#endif

int SW(CreateUserSession)(struct soap*, std::string, std::string& CreateUserSessionResult) {
  CreateUserSessionResult = "gsoap-1";
  return SOAP_OK;
}

int SW(CloseUserSession)(struct soap*, std::string, std::string&) {
  return SOAP_OK;
}

// What clients read of it: they do not know xsd:float, and neither bytes nor long numbers arrive.
xsd__anyType* Readable(struct soap* soap, xsd__anyType* value) {
#ifdef MENDED
  double number = 0;
  if (auto* real = dynamic_cast<xsd__float*>(value))
    number = static_cast<double>(real->__item);
  else if (auto* byte = dynamic_cast<xsd__byte*>(value))
    number = byte->__item;
  else if (auto* whole = dynamic_cast<xsd__long*>(value))
    number = static_cast<double>(whole->__item);
  else
    return value;
  xsd__double* const readable = soap_new_xsd__double(soap);
  readable->__item = number;
  return readable;
#else
  (void)soap;
  return value;
#endif
}

// "parameters.value" answers its parameter, "table" a table, anything else is a fault.
int SW(Execute)(struct soap* soap, std::string, std::string script, ArrayOfParameter* parameters,
                SW(ExecuteResponse) & response) {
  static char table[] =
      "<h><s><c xsd:name=\"city\" xsd:type=\"xsd:string\"/><c xsd:name=\"people\" "
      "xsd:type=\"xsd:int\"/></s></h>"
      "<d><w><v>Rome</v><v>2748109</v></w></d>";
  if (script.find("<Code>table</Code>") != std::string::npos) {
    SW(RecordList)* const records = SW2(soap_new_, RecordList)(soap);
    records->__any = table;
    response.ExecuteResult = records;
    return SOAP_OK;
  }
  if (script.find("<Code>parameters.value</Code>") == std::string::npos || parameters == nullptr)
    return soap_receiver_fault(soap, "no such script", nullptr);
  response.ExecuteResult = Readable(soap, parameters->Parameter.front().Value);
  return SOAP_OK;
}

#ifdef MENDED
// The answer with the prefix soap, and with the length that it has then.
std::string Mended(std::string answer) {
  const std::string prefix = "SOAP-ENV";
  for (std::size_t at = answer.find(prefix); at != std::string::npos; at = answer.find(prefix, at))
    answer.replace(at, prefix.size(), "soap");
  const std::size_t body = answer.find("\r\n\r\n") + 4;
  const std::size_t length = answer.find("Content-Length: ") + 16;
  return answer.replace(length, answer.find("\r\n", length) - length, std::to_string(answer.size() - body));
}

std::string answer;  // what gSOAP would have sent
int (*closeConnection)(struct soap*);

int KeepBytes(struct soap*, const char* bytes, std::size_t size) {
  answer.append(bytes, size);
  return SOAP_OK;
}

int SendAndClose(struct soap* soap) {
  if (!answer.empty()) answer = Mended(answer);
  const bool isSent = send(soap->socket, answer.data(), answer.size(), MSG_NOSIGNAL) >= 0;
  answer.clear();
  const int closed = closeConnection(soap);
  return isSent ? closed : SOAP_EOF;
}
#endif

// Prints its port, and serves until it is killed.
int main() {
  struct soap* const soap = soap_new1(SOAP_IO_STORE | SOAP_C_UTFSTRING);
#ifdef MENDED
  soap->fsend = KeepBytes;
  closeConnection = soap->fclose;
  soap->fclose = SendAndClose;
#endif
  if (!soap_valid_socket(soap_bind(soap, "127.0.0.1", 0, 10))) return 1;
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(soap->master, reinterpret_cast<sockaddr*>(&address), &size);
  std::printf("%d\n", ntohs(address.sin_port));
  static_cast<void>(std::fflush(stdout));
  while (soap_valid_socket(soap_accept(soap))) {
    soap_serve(soap);
    soap_destroy(soap);
    soap_end(soap);
  }
  return 1;
}
