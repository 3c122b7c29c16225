#include "face/exchange/exchange_record.h"

#include "components/http/body_charset.h"
#include "components/http/text_codec.h"
#include "qvscriptwells/http_component.h"

namespace scriptwells {

Phase ExchangeRecord::Reached() const noexcept {
  if (!connected) return inHandshake || failure == qv::HTTP_E_TLS ? Phase::kTls : Phase::kConnect;
  if (answering) return Phase::kReceive;
  return sent ? Phase::kWait : Phase::kSend;
}

std::string ExchangeRecord::Server() const {
  return qv::ToUtf8(protocol) + "://" + qv::ToUtf8(host) + ":" + std::to_string(port);
}

std::string ExchangeRecord::Way() const {
  return proxy.IsEmpty() ? Server() : Server() + " through the proxy " + qv::ToUtf8(proxy);
}

std::string ExchangeRecord::BodyText() const {
  const qv::BodyCharset charset(contentType, body.view());
  return qv::ToUtf8(charset.Decode(body.view().substr(charset.MarkSize(body.view()))));
}

std::string HeaderText(std::string_view value) {
  return qv::ToUtf8(qv::IsUtf8(value) ? qv::DecodeUtf8(value) : qv::DecodeLatin1(value));
}

}  // namespace scriptwells
