#include "script/file_uploader.h"

#include <vector>

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "soap/http_call.h"
#include "soap/named_arguments.h"
#include "soap/soap_call.h"
#include "support/namespaces.h"
#include "support/path_helpers.h"
#include "support/string_helpers.h"
#include "support/tokenize_string.h"
#include "text/join_text.h"

namespace qv {
namespace {

// The names are swapped compared with their use; deployed installations have them so.
constexpr std::u16string_view kScriptForNewTicket = u"ClientScripts\\UploadScript.xml";
constexpr std::u16string_view kScriptForOldTicket = u"ClientScripts\\UploadScriptWithoutTicketdId.xml";

// For `catch (...)` around an upload.
[[noreturn]] void RethrowAsUploadFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(messages::kHttpProblem);
  }
}

IAttachedFile* Given(IAttachedFile* file) {
  if (file == nullptr) _com_raise_error(E_POINTER);
  return file;
}

void Check(HRESULT code, IAttachedFile* file) {
  ThrowIfFailed(code, file, IAttachedFile::kIid);
}

WideString FileNameOf(IAttachedFile* file) {
  WideString name;
  Check(Given(file)->get_Filename(&name), file);
  return name;
}

bool HasTicket(IAttachedFile* file) {
  VARIANT_BOOL has = VARIANT_FALSE;
  Check(Given(file)->IsTicketId(&has), file);
  return has != VARIANT_FALSE;
}

WideString ScriptPath(bool hasTicket) {
  return JoinText({AppendPathSeparator(GetHomeDirectory()).view(),
                   hasTicket ? kScriptForOldTicket : kScriptForNewTicket});
}

// Reading the ticket clears the object's flag.
IParametersPtr OldTicket(IAttachedFile* file) {
  WideString ticket;
  Check(file->get_TicketId(&ticket), file);
  IParametersPtr list = CreateParameters();
  ThrowIfFailed(list->Add(u"fileTicket", Variant::FromString(ticket), nullptr), list.get(),
                IParameters::kIid);
  return list;
}

WideString AsText(const Variant& value) {
  Variant text;
  const HRESULT code = VariantChangeType(&text, value, VT_BSTR);
  if (Failed(code)) _com_raise_error(code);
  return text.Text();
}

}  // namespace

WideString CFileUploader::Upload(IAttachedFile* attachedFile, const NamedArguments& map) {
  try {
    return UploadNow(attachedFile, map);
  } catch (...) {
    RethrowAsUploadFailure();
  }
}

WideString CFileUploader::UploadNow(IAttachedFile* attachedFile, const NamedArguments& map) {
  const CQvUrl serviceUrl(serviceUrl_);
  const WideString fileName = FileNameOf(attachedFile);
  const WideString proxy = TextArgument(map, argument::kProxy, u"");
  cookieHandle_ = TextArgument(map, argument::kCookieHandle, u"");
  const WideString contextHandle = TextArgument(map, argument::kContextHandle, nullptr);

  const WideString uploadUrl = ObtainUploadUrl(attachedFile, contextHandle, serviceUrl);
  WideString ticket = ExtractTicket(uploadUrl);
  Check(attachedFile->put_TicketId(ticket), attachedFile);
  PostFile(CQvUrl(uploadUrl), proxy, contextHandle, fileName);
  return ticket;
}

WideString CFileUploader::ObtainUploadUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                                          const CQvUrl& serviceUrl) {
  try {
    return AskForUrl(attachedFile, contextHandle, serviceUrl);
  } catch (...) {
    RethrowAsUploadFailure();
  }
}

WideString CFileUploader::AskForUrl(IAttachedFile* attachedFile, const WideString& contextHandle,
                                    const CQvUrl& serviceUrl) {
  NamedArguments map;
  map.emplace(argument::kContextHandle, Variant::FromString(contextHandle));
  map.emplace(argument::kCookieHandle, Variant::FromString(cookieHandle_));
  map.emplace(argument::kScriptLanguage, Variant::FromString(u"JavaScript"));
  const bool hasTicket = HasTicket(attachedFile);
  map.emplace(argument::kScriptFile, Variant::FromString(ScriptPath(hasTicket)));
  if (hasTicket) map.emplace(argument::kParameters, Variant::FromObject(OldTicket(attachedFile).get()));
  CSOAPCall call;
  return AsText(call.Run(serviceUrl, u"Execute", kServiceNamespace, map).Value());
}

WideString CFileUploader::ExtractTicket(const WideString& uploadUrl) {
  std::vector<WideString> pieces;
  return TokenizeString(uploadUrl.view(), u"=", pieces) == 0 ? WideString() : pieces[1];
}

// The component gets only the name of the proxy. The server's answer is read and ignored, even an error.
void CFileUploader::PostFile(const CQvUrl& url, const WideString& proxy, const WideString& contextHandle,
                             const WideString& fileName) {
  HttpCall call;
  try {
    call.Create();
    call.Open(url, proxy);
    call.OpenRequest(u"POST", url.path, u"*/*");
    call.SetHeader(u"Cache-Control", u"no-cache");
    call.SetHeader(ToLower(u"usid"), contextHandle);
    if (!cookieHandle_.IsEmpty()) call.SetHeader(u"Cookie", cookieHandle_);
    call.Check(call.Request()->SendFile(fileName));
    call.Header(u"StatusCode");
    call.Close();
  } catch (...) {
    CloseAndRethrow(call);
  }
}

}  // namespace qv
