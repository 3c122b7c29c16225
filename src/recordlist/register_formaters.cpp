#include "recordlist/register_formaters.h"

#include "format/date_time_formaters.h"
#include "format/object_formaters.h"
#include "format/scalar_formaters.h"
#include "recordlist/formater_record_list.h"

namespace qv {

// "float" has no second name: a value typed "xsd:float" finds no formater, and hosts rely on it reading as
// empty.
void RegisterFormaters() {
  static FormaterBoolCreator boolean(u"boolean");
  static FormaterBoolCreator xsdBoolean(u"xsd:boolean");
  static FormaterByteCreator byte(u"byte");
  static FormaterByteCreator xsdByte(u"xsd:byte");
  static FormaterDateCreator date(u"date");
  static FormaterDateCreator xsdDate(u"xsd:date");
  static FormaterDateTimeCreator dateTime(u"datetime");
  static FormaterDateTimeCreator xsdDateTime(u"xsd:datetime");
  static FormaterDoubleCreator doubleNumber(u"double");
  static FormaterDoubleCreator xsdDouble(u"xsd:double");
  static FormaterFloatCreator floatNumber(u"float");
  static FormaterIntCreator intNumber(u"int");
  static FormaterIntCreator xsdInt(u"xsd:int");
  static FormaterLongCreator longNumber(u"long");
  static FormaterLongCreator xsdLong(u"xsd:long");
  static FormaterShortCreator shortNumber(u"short");
  static FormaterShortCreator xsdShort(u"xsd:short");
  static FormaterStringCreator string(u"string");
  static FormaterStringCreator xsdString(u"xsd:string");
  static FormaterTimeCreator time(u"time");
  static FormaterTimeCreator xsdTime(u"xsd:time");
  static FormaterRecordListCreator recordList(u"recordlist");
  static FormaterRecordListCreator sofRecordList(u"sof:recordlist");
  static FormaterDurationCreator duration(u"duration");
  static FormaterDurationCreator xsdDuration(u"xsd:duration");
  static FormaterUrlCreator url(u"url");
  static FormaterUrlCreator sofUrl(u"sof:url");
}

}  // namespace qv
