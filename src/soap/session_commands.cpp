// The envelopes of the two session actions. They differ in one element and one value.
#include "soap/envelope_pieces.h"
#include "soap/named_arguments.h"
#include "soap/qv_command.h"

namespace qv {
namespace {

struct SessionEnvelope {
  const char16_t* method;
  const char16_t* element;
  std::u16string_view key;
};

constexpr SessionEnvelope kCreate = {u"CreateUserSession", u"ConnectionString", argument::kConnectionString};
constexpr SessionEnvelope kRelease = {u"CloseUserSession", u"usid", argument::kContextHandle};

void WriteMethod(WideTextStream& stream, const SessionEnvelope& envelope, const WideString& value) {
  stream.Append(u"<");
  stream.Append(envelope.method);
  stream.AppendAttribute(u"xmlns", kServiceNamespace);
  stream.Append(u"><");
  stream.Append(envelope.element);
  stream.AppendAttribute(u"xsi:type", u"xsd:string");
  stream.Append(u">");
  stream.AppendEncoded(value.view());
  stream.Append(u"</");
  stream.Append(envelope.element);
  stream.Append(u"></");
  stream.Append(envelope.method);
  stream.Append(u">");
}

void WriteSessionEnvelope(WideTextStream& stream, const SessionEnvelope& envelope,
                          const NamedArguments& map) {
  const WideString value = map.at(envelope.key).Text();
  stream.Append(kEnvelopeStart.units);
  WriteMethod(stream, envelope, value);
  stream.Append(kEnvelopeEnd);
  stream.AppendNull();
}

}  // namespace

CQvCommand* CCreateSessionCommand::clone() const {
  return new CCreateSessionCommand;
}

void CCreateSessionCommand::Serialize(WideTextStream& stream, const WideString&, const WideString&,
                                      const WideString&, const NamedArguments& map) {
  WriteSessionEnvelope(stream, kCreate, map);
}

CQvCommand* CReleaseSessionCommand::clone() const {
  return new CReleaseSessionCommand;
}

void CReleaseSessionCommand::Serialize(WideTextStream& stream, const WideString&, const WideString&,
                                       const WideString&, const NamedArguments& map) {
  WriteSessionEnvelope(stream, kRelease, map);
}

}  // namespace qv
