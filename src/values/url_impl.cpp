#include "values/url_impl.h"

#include "text/join_text.h"

namespace qv {

void UrlImpl::Init(WideString url, WideString caption) {
  put_Url(url);
  put_UrlCaption(caption);
}

WideString UrlImpl::get_UrlCaption() {
  return urlCaption_;
}

void UrlImpl::put_UrlCaption(WideString value) {
  urlCaption_ = value;
}

WideString UrlImpl::get_Url() {
  return url_.url;
}

void UrlImpl::put_Url(WideString value) {
  url_.SetUrl(value);
}

WideString UrlImpl::ToString() {
  return url_.url;
}

void UrlImpl::FromText(WideString) {}

WideString UrlImpl::ToText() {
  return JoinText({u"<Object>Url<DataType>string:string</DataType><Data>", url_.url.view(), u":",
                   urlCaption_.view(), u"</Data></Object>"});
}

}  // namespace qv
