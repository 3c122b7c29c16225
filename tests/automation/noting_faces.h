// The ten interfaces that can be used by name and id, each as an object that notes which member ran with
// which arguments, gives prepared results, and fails where a test says so.
#pragma once

#include <string>
#include <vector>

#include "automation/dispatch_faces.h"
#include "automation/late_call.h"
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
constexpr Face kAllFaces[] = {Face::kQvScriptwells,
                              Face::kQvClientServiceRaw,
                              Face::kConnectionModel,
                              Face::kConnectionString,
                              Face::kConnectionStringRaw,
                              Face::kDuration,
                              Face::kUrl,
                              Face::kAttachedFile,
                              Face::kParameter,
                              Face::kParameters};

inline const char* NameOf(Face face) {
  constexpr const char* kNames[] = {"QvScriptwells",
                                    "QvClientServiceRaw",
                                    "ConnectionModel",
                                    "ConnectionString",
                                    "ConnectionStringRaw",
                                    "Duration",
                                    "Url",
                                    "AttachedFile",
                                    "Parameter",
                                    "Parameters"};
  return kNames[static_cast<int>(face)];
}

// What the members of a noting object do. It outlives the object.
struct Script {
  std::vector<std::string> calls;
  HRESULT code = S_OK;
  // With words: a failing member leaves a record of this kind.
  bool leaveRecord = false;
  ErrorInfo record{};
  // Results, of whichever member runs.
  WideString text;
  std::int16_t shortValue = 0;
  std::int32_t longValue = 0;
  double realValue = 0;
  Variant value;
  IUnknown* object = nullptr;  // one of the fitting interface, or null
  // The places for results stay unwritten.
  bool writeNothing = false;
};

class Noting {
 public:
  explicit Noting(Script* script) : script_(script) { ++live_; }
  static int Live() { return live_; }

 protected:
  ~Noting() { --live_; }
  HRESULT Note(const std::string& line) {
    script_->calls.push_back(line);
    if (Failed(script_->code) && script_->leaveRecord) SetErrorInfo(script_->record);
    return script_->code;
  }
  HRESULT Give(const std::string& line, WideString* place) {
    if (!script_->writeNothing) *place = script_->text;
    return Note(line);
  }
  HRESULT Give(const std::string& line, std::int16_t* place) {
    if (!script_->writeNothing) *place = script_->shortValue;
    return Note(line);
  }
  HRESULT Give(const std::string& line, std::int32_t* place) {
    if (!script_->writeNothing) *place = script_->longValue;
    return Note(line);
  }
  HRESULT Give(const std::string& line, double* place) {
    if (!script_->writeNothing) *place = script_->realValue;
    return Note(line);
  }
  HRESULT Give(const std::string& line, Variant* place) {
    if (!script_->writeNothing) *place = script_->value;
    return Note(line);
  }
  // The prepared object, with a reference for the receiver.
  IUnknown* Handed() {
    if (script_->object != nullptr) script_->object->AddRef();
    return script_->object;
  }

  Script* script_;
  std::uint32_t references_ = 0;

 private:
  static inline int live_ = 0;
};

inline std::string OneArgument(const char* member, const WideString& text) {
  return std::string(member) + "(" + Shown(text) + ")";
}
inline std::string OneArgument(const char* member, int number) {
  return std::string(member) + "(" + std::to_string(number) + ")";
}
inline std::string OneArgument(const char* member, double number) {
  char digits[40];
  std::snprintf(digits, sizeof digits, "%g", number);
  return std::string(member) + "(" + digits + ")";
}
inline std::string ShownObject(const void* object) {
  return object == nullptr ? "null" : "object";
}

class NotingClient final : public QvScriptwellsDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT ConnectionModel(IConnectionModel** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IConnectionModel*>(Handed());
    return Note("ConnectionModel");
  }
  HRESULT Url(IUrl** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IUrl*>(Handed());
    return Note("Url");
  }
  HRESULT Duration(IDuration** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IDuration*>(Handed());
    return Note("Duration");
  }
  HRESULT ConnectionString(IConnectionString** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IConnectionString*>(Handed());
    return Note("ConnectionString");
  }
  HRESULT AttachedFile(IAttachedFile** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IAttachedFile*>(Handed());
    return Note("AttachedFile");
  }
  HRESULT Parameters(IParameters** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IParameters*>(Handed());
    return Note("Parameters");
  }
  HRESULT get_ServerName(WideString* place) noexcept override { return Give("get_ServerName", place); }
  HRESULT put_ServerName(const WideString& text) noexcept override {
    return Note(OneArgument("put_ServerName", text));
  }
  HRESULT get_Proxy(WideString* place) noexcept override { return Give("get_Proxy", place); }
  HRESULT put_Proxy(const WideString& text) noexcept override { return Note(OneArgument("put_Proxy", text)); }

 private:
  ~NotingClient() = default;
};

class NotingClientRaw final : public QvClientServiceRawDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT Init(IUnknown* object) noexcept override { return Note("Init(" + ShownObject(object) + ")"); }

 private:
  ~NotingClientRaw() = default;
};

class NotingModel final : public ConnectionModelDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT CreateUserSession(const WideString& text) noexcept override {
    return Note(OneArgument("CreateUserSession", text));
  }
  HRESULT CloseUserSession() noexcept override { return Note("CloseUserSession"); }
  HRESULT Execute(const WideString& language, const WideString& script, IParameters* parameters,
                  Variant* place) noexcept override {
    return Give("Execute(" + Shown(language) + ", " + Shown(script) + ", " + ShownObject(parameters) + ")",
                place);
  }
  HRESULT ExecuteFile(const WideString& file, IParameters* parameters, Variant* place) noexcept override {
    return Give("ExecuteFile(" + Shown(file) + ", " + ShownObject(parameters) + ")", place);
  }
  HRESULT SetUSID(const WideString& text) noexcept override { return Note(OneArgument("SetUSID", text)); }
  HRESULT DownloadFile(const WideString& url, const WideString& target, WideString* place) noexcept override {
    return Give("DownloadFile(" + Shown(url) + ", " + Shown(target) + ")", place);
  }

 private:
  ~NotingModel() = default;
};

class NotingConnectionString final : public ConnectionStringDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT put_UserName(const WideString& text) noexcept override {
    return Note(OneArgument("put_UserName", text));
  }
  HRESULT get_UserName(WideString* place) noexcept override { return Give("get_UserName", place); }
  HRESULT get_UserPassword(WideString* place) noexcept override { return Give("get_UserPassword", place); }
  HRESULT put_UserPassword(const WideString& text) noexcept override {
    return Note(OneArgument("put_UserPassword", text));
  }
  HRESULT get_DatabaseName(WideString* place) noexcept override { return Give("get_DatabaseName", place); }
  HRESULT put_DatabaseName(const WideString& text) noexcept override {
    return Note(OneArgument("put_DatabaseName", text));
  }
  HRESULT get_ReplicaID(WideString* place) noexcept override { return Give("get_ReplicaID", place); }
  HRESULT put_ReplicaID(const WideString& text) noexcept override {
    return Note(OneArgument("put_ReplicaID", text));
  }
  HRESULT get_DatabaseID(WideString* place) noexcept override { return Give("get_DatabaseID", place); }
  HRESULT put_DatabaseID(const WideString& text) noexcept override {
    return Note(OneArgument("put_DatabaseID", text));
  }
  HRESULT ToString(WideString* place) noexcept override { return Give("ToString", place); }

 private:
  ~NotingConnectionString() = default;
};

class NotingConnectionStringRaw final : public ConnectionStringRawDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT Initialize(const WideString& text) noexcept override {
    return Note(OneArgument("Initialize", text));
  }

 private:
  ~NotingConnectionStringRaw() = default;
};

class NotingDuration final : public DurationDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT get_Day(std::int16_t* place) noexcept override { return Give("get_Day", place); }
  HRESULT put_Day(std::int16_t value) noexcept override { return Note(OneArgument("put_Day", value)); }
  HRESULT get_Month(std::int16_t* place) noexcept override { return Give("get_Month", place); }
  HRESULT put_Month(std::int16_t value) noexcept override { return Note(OneArgument("put_Month", value)); }
  HRESULT get_Year(std::int16_t* place) noexcept override { return Give("get_Year", place); }
  HRESULT put_Year(std::int16_t value) noexcept override { return Note(OneArgument("put_Year", value)); }
  HRESULT get_Hour(std::int16_t* place) noexcept override { return Give("get_Hour", place); }
  HRESULT put_Hour(std::int16_t value) noexcept override { return Note(OneArgument("put_Hour", value)); }
  HRESULT get_Min(std::int16_t* place) noexcept override { return Give("get_Min", place); }
  HRESULT put_Min(std::int16_t value) noexcept override { return Note(OneArgument("put_Min", value)); }
  HRESULT get_Sec(double* place) noexcept override { return Give("get_Sec", place); }
  HRESULT put_Sec(double value) noexcept override { return Note(OneArgument("put_Sec", value)); }
  HRESULT get_Negative(VARIANT_BOOL* place) noexcept override { return Give("get_Negative", place); }
  HRESULT put_Negative(VARIANT_BOOL value) noexcept override {
    return Note(OneArgument("put_Negative", value));
  }

 private:
  ~NotingDuration() = default;
};

class NotingUrl final : public UrlDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT get_UrlCaption(WideString* place) noexcept override { return Give("get_UrlCaption", place); }
  HRESULT put_UrlCaption(const WideString& text) noexcept override {
    return Note(OneArgument("put_UrlCaption", text));
  }
  HRESULT get_Url(WideString* place) noexcept override { return Give("get_Url", place); }
  HRESULT put_Url(const WideString& text) noexcept override { return Note(OneArgument("put_Url", text)); }
  HRESULT ToString(WideString* place) noexcept override { return Give("ToString", place); }

 private:
  ~NotingUrl() = default;
};

class NotingAttachedFile final : public AttachedFileDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT Init(const WideString& text) noexcept override { return Note(OneArgument("Init", text)); }
  HRESULT get_Filename(WideString* place) noexcept override { return Give("get_Filename", place); }
  HRESULT put_Filename(const WideString& text) noexcept override {
    return Note(OneArgument("put_Filename", text));
  }
  HRESULT get_FileId(WideString* place) noexcept override { return Give("get_FileId", place); }
  HRESULT put_FileId(const WideString& text) noexcept override {
    return Note(OneArgument("put_FileId", text));
  }
  HRESULT get_SourceFileLifeTime(std::int32_t* place) noexcept override {
    return Give("get_SourceFileLifeTime", place);
  }
  HRESULT put_SourceFileLifeTime(std::int32_t value) noexcept override {
    return Note(OneArgument("put_SourceFileLifeTime", value));
  }
  HRESULT get_CleanUp(std::int32_t* place) noexcept override { return Give("get_CleanUp", place); }
  HRESULT put_CleanUp(std::int32_t value) noexcept override {
    return Note(OneArgument("put_CleanUp", value));
  }
  HRESULT get_TicketId(WideString* place) noexcept override { return Give("get_TicketId", place); }
  HRESULT put_TicketId(const WideString& text) noexcept override {
    return Note(OneArgument("put_TicketId", text));
  }
  HRESULT IsTicketId(VARIANT_BOOL* place) noexcept override { return Give("IsTicketId", place); }

 private:
  ~NotingAttachedFile() = default;
};

class NotingParameter final : public ParameterDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT SetValues(const WideString& key, const Variant& value) noexcept override {
    return Note("SetValues(" + Shown(key) + ", " + ShownValue(value) + ")");
  }
  HRESULT get_ParamKey(WideString* place) noexcept override { return Give("get_ParamKey", place); }
  HRESULT get_ParamValue(Variant* place) noexcept override { return Give("get_ParamValue", place); }
  HRESULT get_ParamTypeAsString(WideString* place) noexcept override {
    return Give("get_ParamTypeAsString", place);
  }

 private:
  ~NotingParameter() = default;
};

class NotingParameters final : public ParametersDispatch, public Noting {
 public:
  using Noting::Noting;
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IUnknown::kIid && iid != IDispatch::kIid && iid != IParameters::kIid) return E_NOINTERFACE;
    *object = static_cast<IParameters*>(this);
    AddRef();
    return S_OK;
  }
  std::uint32_t AddRef() noexcept override { return ++references_; }
  std::uint32_t Release() noexcept override {
    const std::uint32_t left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT Add(const WideString& key, const Variant& value, IParameter** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IParameter*>(Handed());
    return Note("Add(" + Shown(key) + ", " + ShownValue(value) + ")");
  }
  HRESULT Remove(std::int16_t index) noexcept override { return Note(OneArgument("Remove", index)); }
  HRESULT Find(std::int16_t index, IParameter** place) noexcept override {
    if (!script_->writeNothing) *place = static_cast<IParameter*>(Handed());
    return Note(OneArgument("Find", index));
  }
  HRESULT Size(std::int16_t* place) noexcept override { return Give("Size", place); }
  HRESULT Clear() noexcept override { return Note("Clear"); }

 private:
  ~NotingParameters() = default;
};

inline IDispatchPtr MakeNoting(Face face, Script* script) {
  switch (face) {
    case Face::kQvScriptwells:
      return IDispatchPtr(new NotingClient(script));
    case Face::kQvClientServiceRaw:
      return IDispatchPtr(new NotingClientRaw(script));
    case Face::kConnectionModel:
      return IDispatchPtr(new NotingModel(script));
    case Face::kConnectionString:
      return IDispatchPtr(new NotingConnectionString(script));
    case Face::kConnectionStringRaw:
      return IDispatchPtr(new NotingConnectionStringRaw(script));
    case Face::kDuration:
      return IDispatchPtr(new NotingDuration(script));
    case Face::kUrl:
      return IDispatchPtr(new NotingUrl(script));
    case Face::kAttachedFile:
      return IDispatchPtr(new NotingAttachedFile(script));
    case Face::kParameter:
      return IDispatchPtr(new NotingParameter(script));
    case Face::kParameters:
      return IDispatchPtr(new NotingParameters(script));
  }
  return nullptr;
}

}  // namespace qv
