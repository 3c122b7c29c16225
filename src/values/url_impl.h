// The logic of a Url: a link and its caption.
#pragma once

#include "qvscriptwells/wide_string.h"
#include "support/qv_url.h"

namespace qv {

class UrlImpl {
 public:
  virtual ~UrlImpl() = default;
  virtual void Init(WideString url, WideString caption);
  virtual WideString get_UrlCaption();
  virtual void put_UrlCaption(WideString value);
  virtual WideString get_Url();
  // Throws as CQvUrl::SetUrl.
  virtual void put_Url(WideString value);
  virtual WideString ToString();
  virtual void FromText(WideString text);  // ignores it
  // "<Object>Url<DataType>string:string</DataType><Data>link:caption</Data></Object>", nothing escaped.
  virtual WideString ToText();

 private:
  CQvUrl url_;
  WideString urlCaption_;
};

}  // namespace qv
