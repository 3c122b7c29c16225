// The input of soapcpp2, for a server as gSOAP makes it. For the one with the changes that `scriptwells check` names,
// the test replaces the prefix sw by NS2 and adds the lines that begin with "mended".
//gsoap sw service name: Scripts
//gsoap sw service namespace: http://quorvane.example/dev/ns/ivarnel/scriptwells
//gsoap sw schema namespace: http://quorvane.example/dev/ns/ivarnel/scriptwells
//gsoap sw schema form: unqualified
#import "stl.h"

class xsd__anyType { public: };
class xsd__int : public xsd__anyType { public: int __item; };
class xsd__short : public xsd__anyType { public: short __item; };
class xsd__byte : public xsd__anyType { public: char __item; };
class xsd__long : public xsd__anyType { public: LONG64 __item; };
class xsd__boolean : public xsd__anyType { public: bool __item; };
class xsd__double : public xsd__anyType { public: double __item; };
class xsd__float : public xsd__anyType { public: float __item; };
class xsd__string : public xsd__anyType { public: std::string __item; };
//mended class xsd__date : public xsd__anyType { public: std::string __item; };
//mended class xsd__time : public xsd__anyType { public: std::string __item; };
//mended class xsd__datetime : public xsd__anyType { public: std::string __item; };
//mended class xsd__duration : public xsd__anyType { public: std::string __item; };
class sw__RecordList : public xsd__anyType { public: _XML __any; };

class NamedValue { public: std::string Name; xsd__anyType *Value; };
class ArrayOfParameter { public: std::vector<NamedValue> Parameter; };

class sw__ExecuteResponse { public: xsd__anyType *ExecuteResult; };

int sw__CreateUserSession(std::string ConnectionString, std::string &CreateUserSessionResult);
int sw__CloseUserSession(std::string usid, std::string &CloseUserSessionResult);
int sw__Execute(std::string usid, std::string Script, ArrayOfParameter *parameters, sw__ExecuteResponse &response);
