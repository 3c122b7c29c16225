#include "recordlist/register_formaters.h"

#include "format/date_time_formaters.h"
#include "format/formater_factory.h"
#include "format/object_formaters.h"
#include "format/scalar_formaters.h"
#include "qvscriptwells/value_types_hold.h"
#include "recordlist/formater_record_list.h"

namespace qv {
namespace {

// Each registers itself. "float" has no second name: a value of type "xsd:float" has no formater, and hosts
// rely on it reading as empty.
struct Creators {
  FormaterBoolCreator boolean{u"boolean"};
  FormaterBoolCreator xsdBoolean{u"xsd:boolean"};
  FormaterByteCreator byte{u"byte"};
  FormaterByteCreator xsdByte{u"xsd:byte"};
  FormaterDateCreator date{u"date"};
  FormaterDateCreator xsdDate{u"xsd:date"};
  FormaterDateTimeCreator dateTime{u"datetime"};
  FormaterDateTimeCreator xsdDateTime{u"xsd:datetime"};
  FormaterDoubleCreator doubleNumber{u"double"};
  FormaterDoubleCreator xsdDouble{u"xsd:double"};
  FormaterFloatCreator floatNumber{u"float"};
  FormaterIntCreator intNumber{u"int"};
  FormaterIntCreator xsdInt{u"xsd:int"};
  FormaterLongCreator longNumber{u"long"};
  FormaterLongCreator xsdLong{u"xsd:long"};
  FormaterShortCreator shortNumber{u"short"};
  FormaterShortCreator xsdShort{u"xsd:short"};
  FormaterStringCreator string{u"string"};
  FormaterStringCreator xsdString{u"xsd:string"};
  FormaterTimeCreator time{u"time"};
  FormaterTimeCreator xsdTime{u"xsd:time"};
  FormaterRecordListCreator recordList{u"recordlist"};
  FormaterRecordListCreator sofRecordList{u"sof:recordlist"};
  FormaterDurationCreator duration{u"duration"};
  FormaterDurationCreator xsdDuration{u"xsd:duration"};
  FormaterUrlCreator url{u"url"};
  FormaterUrlCreator sofUrl{u"sof:url"};
};

struct ValueTypes {
  ValueTypes() { names.RegisterAll(*FormaterFactory::Instance()); }
  Creators creators;
  FormaterFactory names;  // to fill the factory again
};

// Under the lock. All or nothing, so that the factory never has names of destroyed creators.
const ValueTypes& RegisteredTypes() {
  try {
    static const ValueTypes types;
    return types;
  } catch (...) {
    FormaterFactory::Destroy();
    throw;
  }
}

void FillUnderLock() {
  const FormaterFactory& names = RegisteredTypes().names;
  FormaterFactory::Instance()->RegisterAll(names);
}

int holds = 0;  // under the lock

}  // namespace

void RegisterFormaters() {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  RegisteredTypes();
}

void FillFormaters() {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  FillUnderLock();
}

// With a hold the factory stays, since the next one would get the same types at once.
void EndFormaters() noexcept {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  if (holds == 0) FormaterFactory::Destroy();
}

ValueTypesHold::ValueTypesHold() {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  FillUnderLock();
  ++holds;
}

ValueTypesHold::~ValueTypesHold() {
  const std::lock_guard<std::mutex> lock(FormaterMutex());
  --holds;
}

}  // namespace qv
