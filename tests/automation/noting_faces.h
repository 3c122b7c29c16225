// The ten interfaces that can be used by name and id, each as an object that notes which member ran with
// which arguments, returns prepared results, and fails where a test says so.
#pragma once

#include <string>
#include <vector>

#include "automation/dispatch_faces.h"
#include "automation/late_call.h"
#include "com/counted_object.h"
#include "qvscriptwells/error_info.h"

namespace qv {

enum class Face {
  kQvScriptwells,
  kQvClientServiceRaw,
  kConnectionModel,
  kConnectionString,
  kConnectionStringRaw,
  kDuration,
  kUrl,
  kAttachedFile,
  kParameter,
  kParameters
};

// What the members of a noting object do. It outlives the object.
struct Script {
  std::vector<std::string> calls;
  HRESULT code = S_OK;
  // A failing member leaves this record.
  bool leaveRecord = false;
  ErrorInfo record{};
  // Results, of whichever member runs.
  WideString text;
  std::int16_t shortValue = 0;
  std::int32_t longValue = 0;
  double realValue = 0;
  Variant value;
  IUnknown* object = nullptr;  // one of the fitting interface, or null
  // The output parameters stay unwritten.
  bool writeNothing = false;
};

inline std::string ShownArgument(const WideString& text) {
  return Shown(text);
}
inline std::string ShownArgument(const Variant& value) {
  return ShownValue(value);
}
inline std::string ShownArgument(int number) {
  return std::to_string(number);
}
inline std::string ShownArgument(double number) {
  return ShownReal(number);
}
inline std::string ShownArgument(const IUnknown* object) {
  return object == nullptr ? "null" : "object";
}

class Noting {
 public:
  explicit Noting(Script* script) : script_(script) { ++live_; }
  static int Live() { return live_; }

 protected:
  ~Noting() { --live_; }

  // Notes "Member" or "Member(first, second)".
  template <class... Arguments>
  HRESULT Note(const char* member, const Arguments&... arguments) {
    std::string line = member;
    [[maybe_unused]] const char* separator = "(";
    ((line += separator + ShownArgument(arguments), separator = ", "), ...);
    script_->calls.push_back(line + (sizeof...(arguments) == 0 ? "" : ")"));
    if (Failed(script_->code) && script_->leaveRecord) SetErrorInfo(script_->record);
    return script_->code;
  }
  // The same for a member with a result.
  template <class Result, class... Arguments>
  HRESULT Give(const char* member, Result* result, const Arguments&... arguments) {
    if (!script_->writeNothing) Prepare(result);
    return Note(member, arguments...);
  }

 private:
  void Prepare(WideString* result) { *result = script_->text; }
  void Prepare(std::int16_t* result) { *result = script_->shortValue; }
  void Prepare(std::int32_t* result) { *result = script_->longValue; }
  void Prepare(double* result) { *result = script_->realValue; }
  void Prepare(Variant* result) { *result = script_->value; }
  template <class Interface>
  void Prepare(Interface** result) {
    *result = static_cast<Interface*>(script_->object);
    if (*result != nullptr) (*result)->AddRef();
  }

  static inline int live_ = 0;
  Script* script_;
};

class NotingClient final : public CountedObject<QvScriptwellsDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT ConnectionModel(IConnectionModel** to) noexcept override { return Give("ConnectionModel", to); }
  HRESULT Url(IUrl** to) noexcept override { return Give("Url", to); }
  HRESULT Duration(IDuration** to) noexcept override { return Give("Duration", to); }
  HRESULT ConnectionString(IConnectionString** to) noexcept override { return Give("ConnectionString", to); }
  HRESULT AttachedFile(IAttachedFile** to) noexcept override { return Give("AttachedFile", to); }
  HRESULT Parameters(IParameters** to) noexcept override { return Give("Parameters", to); }
  HRESULT get_ServerName(WideString* to) noexcept override { return Give("get_ServerName", to); }
  HRESULT put_ServerName(const WideString& text) noexcept override { return Note("put_ServerName", text); }
  HRESULT get_Proxy(WideString* to) noexcept override { return Give("get_Proxy", to); }
  HRESULT put_Proxy(const WideString& text) noexcept override { return Note("put_Proxy", text); }
};

class NotingClientRaw final : public CountedObject<QvClientServiceRawDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT Init(IUnknown* object) noexcept override { return Note("Init", object); }
};

class NotingModel final : public CountedObject<ConnectionModelDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT CreateUserSession(const WideString& text) noexcept override {
    return Note("CreateUserSession", text);
  }
  HRESULT CloseUserSession() noexcept override { return Note("CloseUserSession"); }
  HRESULT Execute(const WideString& language, const WideString& script, IParameters* list,
                  Variant* to) noexcept override {
    return Give("Execute", to, language, script, list);
  }
  HRESULT ExecuteFile(const WideString& file, IParameters* list, Variant* to) noexcept override {
    return Give("ExecuteFile", to, file, list);
  }
  HRESULT SetUSID(const WideString& text) noexcept override { return Note("SetUSID", text); }
  HRESULT DownloadFile(const WideString& url, const WideString& target, WideString* to) noexcept override {
    return Give("DownloadFile", to, url, target);
  }
};

class NotingConnectionString final : public CountedObject<ConnectionStringDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT put_UserName(const WideString& text) noexcept override { return Note("put_UserName", text); }
  HRESULT get_UserName(WideString* to) noexcept override { return Give("get_UserName", to); }
  HRESULT get_UserPassword(WideString* to) noexcept override { return Give("get_UserPassword", to); }
  HRESULT put_UserPassword(const WideString& text) noexcept override {
    return Note("put_UserPassword", text);
  }
  HRESULT get_DatabaseName(WideString* to) noexcept override { return Give("get_DatabaseName", to); }
  HRESULT put_DatabaseName(const WideString& text) noexcept override {
    return Note("put_DatabaseName", text);
  }
  HRESULT get_ReplicaID(WideString* to) noexcept override { return Give("get_ReplicaID", to); }
  HRESULT put_ReplicaID(const WideString& text) noexcept override { return Note("put_ReplicaID", text); }
  HRESULT get_DatabaseID(WideString* to) noexcept override { return Give("get_DatabaseID", to); }
  HRESULT put_DatabaseID(const WideString& text) noexcept override { return Note("put_DatabaseID", text); }
  HRESULT ToString(WideString* to) noexcept override { return Give("ToString", to); }
};

class NotingConnectionStringRaw final : public CountedObject<ConnectionStringRawDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT Initialize(const WideString& text) noexcept override { return Note("Initialize", text); }
};

class NotingDuration final : public CountedObject<DurationDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT get_Day(std::int16_t* to) noexcept override { return Give("get_Day", to); }
  HRESULT put_Day(std::int16_t value) noexcept override { return Note("put_Day", value); }
  HRESULT get_Month(std::int16_t* to) noexcept override { return Give("get_Month", to); }
  HRESULT put_Month(std::int16_t value) noexcept override { return Note("put_Month", value); }
  HRESULT get_Year(std::int16_t* to) noexcept override { return Give("get_Year", to); }
  HRESULT put_Year(std::int16_t value) noexcept override { return Note("put_Year", value); }
  HRESULT get_Hour(std::int16_t* to) noexcept override { return Give("get_Hour", to); }
  HRESULT put_Hour(std::int16_t value) noexcept override { return Note("put_Hour", value); }
  HRESULT get_Min(std::int16_t* to) noexcept override { return Give("get_Min", to); }
  HRESULT put_Min(std::int16_t value) noexcept override { return Note("put_Min", value); }
  HRESULT get_Sec(double* to) noexcept override { return Give("get_Sec", to); }
  HRESULT put_Sec(double value) noexcept override { return Note("put_Sec", value); }
  HRESULT get_Negative(VARIANT_BOOL* to) noexcept override { return Give("get_Negative", to); }
  HRESULT put_Negative(VARIANT_BOOL value) noexcept override { return Note("put_Negative", value); }
};

class NotingUrl final : public CountedObject<UrlDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT get_UrlCaption(WideString* to) noexcept override { return Give("get_UrlCaption", to); }
  HRESULT put_UrlCaption(const WideString& text) noexcept override { return Note("put_UrlCaption", text); }
  HRESULT get_Url(WideString* to) noexcept override { return Give("get_Url", to); }
  HRESULT put_Url(const WideString& text) noexcept override { return Note("put_Url", text); }
  HRESULT ToString(WideString* to) noexcept override { return Give("ToString", to); }
};

class NotingAttachedFile final : public CountedObject<AttachedFileDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT Init(const WideString& text) noexcept override { return Note("Init", text); }
  HRESULT get_Filename(WideString* to) noexcept override { return Give("get_Filename", to); }
  HRESULT put_Filename(const WideString& text) noexcept override { return Note("put_Filename", text); }
  HRESULT get_FileId(WideString* to) noexcept override { return Give("get_FileId", to); }
  HRESULT put_FileId(const WideString& text) noexcept override { return Note("put_FileId", text); }
  HRESULT get_SourceFileLifeTime(std::int32_t* to) noexcept override {
    return Give("get_SourceFileLifeTime", to);
  }
  HRESULT put_SourceFileLifeTime(std::int32_t value) noexcept override {
    return Note("put_SourceFileLifeTime", value);
  }
  HRESULT get_CleanUp(std::int32_t* to) noexcept override { return Give("get_CleanUp", to); }
  HRESULT put_CleanUp(std::int32_t value) noexcept override { return Note("put_CleanUp", value); }
  HRESULT get_TicketId(WideString* to) noexcept override { return Give("get_TicketId", to); }
  HRESULT put_TicketId(const WideString& text) noexcept override { return Note("put_TicketId", text); }
  HRESULT IsTicketId(VARIANT_BOOL* to) noexcept override { return Give("IsTicketId", to); }
};

class NotingParameter final : public CountedObject<ParameterDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT SetValues(const WideString& key, const Variant& value) noexcept override {
    return Note("SetValues", key, value);
  }
  HRESULT get_ParamKey(WideString* to) noexcept override { return Give("get_ParamKey", to); }
  HRESULT get_ParamValue(Variant* to) noexcept override { return Give("get_ParamValue", to); }
  HRESULT get_ParamTypeAsString(WideString* to) noexcept override {
    return Give("get_ParamTypeAsString", to);
  }
};

class NotingParameters final : public CountedObject<ParametersDispatch>, public Noting {
 public:
  using Noting::Noting;
  HRESULT Add(const WideString& key, const Variant& value, IParameter** to) noexcept override {
    return Give("Add", to, key, value);
  }
  HRESULT Remove(std::int16_t index) noexcept override { return Note("Remove", index); }
  HRESULT Find(std::int16_t index, IParameter** to) noexcept override { return Give("Find", to, index); }
  HRESULT Size(std::int16_t* to) noexcept override { return Give("Size", to); }
  HRESULT Clear() noexcept override { return Note("Clear"); }
};

template <class Object>
IDispatchPtr MakeNotingObject(Script* script) {
  return IDispatchPtr(new Object(script));
}

struct FaceRow {
  Face face;
  const char* name;
  IDispatchPtr (*make)(Script* script);
};
// In the order of Face.
constexpr FaceRow kFaces[] = {
    {Face::kQvScriptwells, "QvScriptwells", &MakeNotingObject<NotingClient>},
    {Face::kQvClientServiceRaw, "QvClientServiceRaw", &MakeNotingObject<NotingClientRaw>},
    {Face::kConnectionModel, "ConnectionModel", &MakeNotingObject<NotingModel>},
    {Face::kConnectionString, "ConnectionString", &MakeNotingObject<NotingConnectionString>},
    {Face::kConnectionStringRaw, "ConnectionStringRaw", &MakeNotingObject<NotingConnectionStringRaw>},
    {Face::kDuration, "Duration", &MakeNotingObject<NotingDuration>},
    {Face::kUrl, "Url", &MakeNotingObject<NotingUrl>},
    {Face::kAttachedFile, "AttachedFile", &MakeNotingObject<NotingAttachedFile>},
    {Face::kParameter, "Parameter", &MakeNotingObject<NotingParameter>},
    {Face::kParameters, "Parameters", &MakeNotingObject<NotingParameters>},
};

inline const FaceRow& RowOf(Face face) {
  return kFaces[static_cast<int>(face)];
}
inline std::string NameOf(Face face) {
  return RowOf(face).name;
}
inline IDispatchPtr MakeNoting(Face face, Script* script) {
  return RowOf(face).make(script);
}

}  // namespace qv
