// gSOAP's generated client, with what its manual advises for speed: one context that is reused, a kept
// connection, UTF-8 texts as they are, and trees without references between elements.
#include <cstring>
#include <stdexcept>

#include "peer.h"
#include "script_sample.h"
#include "scriptwells.nsmap"
#include "soapH.h"
#include "table_sum.h"

namespace qv::bench {
namespace {

constexpr char kAction[] = QV_NAMESPACE_HOST "/dev/ns/ivarnel/scriptwells#Execute";

// The generated functions take texts that they do not change as `char*`.
char* Text(const char* text) {
  return const_cast<char*>(text);
}

// The script document as text, as the library writes it inside the envelope.
std::string ScriptDocument() {
  return "<Scriptwell Language=\"JavaScript\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xsi:schemaLocation=\"" QV_NAMESPACE_HOST "/dev/ns/scriptwellsApp/scriptwell/1.0 " QV_NAMESPACE_HOST
         "/dev/schema/scriptwellsApp/scriptwell/1.0/scriptwell.xsd\" xmlns=\"" QV_NAMESPACE_HOST
         "/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>" +
         ToUtf8(Script(kSmallScript)) + "</Code></Scriptwell>";
}

class Gsoap : public Peer {
 public:
  explicit Gsoap(const Task& task)
      : task_(task),
        url_(task.url + "/Quorvane/api/Scriptwells/2.0/Scriptwells.asmx"),
        soap_(soap_new1(SOAP_IO_KEEPALIVE | SOAP_C_UTFSTRING | SOAP_XML_TREE)) {
    soap_->maxoccurs = 1L << 30;  // rows: as good as no limit
    Set(&parameters_[0], "count", SOAP_TYPE_xsd__int, &count_);
    Set(&parameters_[1], "factor", SOAP_TYPE_xsd__double, &factor_);
    Set(&parameters_[2], "name", SOAP_TYPE_xsd__string, Text("Quorvane"));
    list_.__sizeParameter = 3;
    list_.qv__Parameter = parameters_;
  }
  ~Gsoap() override {
    Release();
    soap_free(soap_);
  }

  std::size_t Call() override {
    Release();
    const int code = task_.rows == 0
                         ? soap_call_qv__Execute(soap_, url_.c_str(), kAction, Text(kSampleSession),
                                                 script_.data(), &list_, &string_)
                         : soap_call_qv__Execute_(soap_, url_.c_str(), kAction, Text(kSampleSession),
                                                  script_.data(), &list_, &table_);
    if (code != SOAP_OK) Fail();
    return 0;
  }

  void Check() override {
    if (task_.rows > 0) {
      if (table_.qv__ExecuteResult.sof__Headers.xsd__schema.__sizeelement != 10)
        throw std::runtime_error("wrong columns");
      CheckSum(Sum(), task_.rows);
    } else if (string_.qv__ExecuteResult == nullptr || std::strcmp(string_.qv__ExecuteResult, "hello") != 0) {
      throw std::runtime_error("wrong answer");
    }
  }

 protected:
  TableSum Sum() const {
    const sof__Records& records = table_.qv__ExecuteResult.sof__Records;
    TableSum sum;
    for (int i = 0; i < records.__sizeRecord; ++i, ++sum.rows) {
      const sof__Record& row = records.sof__Record[i];
      sum.characters += std::strlen(row.qv__customer);
      sum.numbers += row.qv__number;
      sum.pieces += row.qv__pieces;
      sum.prices += row.qv__price;
      sum.weights += row.qv__weight;
      sum.dates += (row.qv__ordered > 0 ? 1U : 0U) + (row.qv__delivered > 0 ? 1U : 0U);
      sum.paid += row.qv__paid ? 1 : 0;
      sum.express += row.qv__express ? 1 : 0;
    }
    return sum;
  }

  const Task task_;

 private:
  static void Set(qv__Parameter* parameter, const char* name, int type, void* value) {
    parameter->qv__Name = Text(name);
    parameter->__type_qv__Value = type;
    parameter->qv__Value = value;
  }

  void Release() {
    soap_destroy(soap_);
    soap_end(soap_);
  }

  [[noreturn]] void Fail() {
    char words[1000] = "";
    soap_sprint_fault(soap_, words, sizeof words);
    throw std::runtime_error(words);
  }

  const std::string url_;
  soap* const soap_;
  std::string script_ = ScriptDocument();
  int count_ = 42;
  double factor_ = 2.5;
  qv__Parameter parameters_[3];
  qv__Parameters list_;
  qv__ExecuteResponse string_;
  qv__ExecuteResponse_ table_;
};

class GsoapWalk : public Gsoap {
 public:
  using Gsoap::Gsoap;
  std::size_t Call() override {
    Gsoap::Call();
    CheckSum(Sum(), task_.rows);
    return 0;
  }
  void Check() override {}
};

}  // namespace

std::unique_ptr<Peer> MakeGsoap(const Task& task) {
  return std::make_unique<Gsoap>(task);
}
std::unique_ptr<Peer> MakeGsoapWalk(const Task& task) {
  return std::make_unique<GsoapWalk>(task);
}

}  // namespace qv::bench
