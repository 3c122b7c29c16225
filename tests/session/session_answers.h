// Answers of a server, as the tests of sessions need them.
#pragma once

namespace qv {

constexpr char16_t kSessionOpened[] =
    u"<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult>u1</"
    u"CreateUserSessionResult>"
    u"</CreateUserSessionResponse></soap:Body></soap:Envelope>";
constexpr char16_t kSessionOpenedAgain[] =
    u"<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult>u2</"
    u"CreateUserSessionResult>"
    u"</CreateUserSessionResponse></soap:Body></soap:Envelope>";
constexpr char16_t kSessionWithoutId[] =
    u"<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult/>"
    u"</CreateUserSessionResponse></soap:Body></soap:Envelope>";
constexpr char16_t kNoAnswerElement[] = u"<soap:Envelope><soap:Body/></soap:Envelope>";
constexpr char16_t kSessionClosed[] =
    u"<soap:Envelope><soap:Body><CloseUserSessionResponse/></soap:Body></soap:Envelope>";
constexpr char16_t kScriptRan[] =
    u"<soap:Envelope><soap:Body><ExecuteResponse><r "
    u"xsi:type=\"xsd:string\">done</r></ExecuteResponse></soap:Body>"
    u"</soap:Envelope>";
constexpr char16_t kFaultFive[] =
    u"<soap:Envelope><soap:Body><soap:Fault><faultstring>&lt;ErrorObject&gt;&lt;errorCode&gt;5&lt;/"
    u"errorCode&gt;"
    u"&lt;description&gt;server "
    u"words&lt;/description&gt;&lt;/ErrorObject&gt;</faultstring></soap:Fault></soap:Body>"
    u"</soap:Envelope>";

}  // namespace qv
