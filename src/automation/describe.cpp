#include "qvscriptwells/describe.h"

#include "automation/dispatch_faces.h"

namespace qv {
namespace {

const DispatchTable* const kTables[] = {
    &kQvScriptwellsTable,
    &kQvClientServiceRawTable,
    &kConnectionModelTable,
    &kParametersTable,
    &kParameterTable,
    &kConnectionStringTable,
    &kConnectionStringRawTable,
    &kAttachedFileTable,
    &kDurationTable,
    &kUrlTable,
};

MemberKind KindOf(CalledBy calledBy) {
  if (calledBy == CalledBy::kRead) return MemberKind::kRead;
  return calledBy == CalledBy::kWrite ? MemberKind::kWrite : MemberKind::kMethod;
}

const char16_t* InterfaceNameOf(const Guid* iid) {
  if (iid == nullptr) return nullptr;
  for (const DispatchTable* table : kTables)
    if (*table->iid == *iid) return table->interfaceName;
  return nullptr;
}

MemberDescription Describe(const MemberRow& row) {
  MemberDescription member{row.name, row.id,     KindOf(row.calledBy),
                           {},       row.result, InterfaceNameOf(row.resultIid)};
  for (std::uint32_t i = 0; i < row.argumentCount; ++i) {
    const ArgumentRow& argument = row.arguments[i];
    member.arguments.push_back({argument.label, argument.type, InterfaceNameOf(argument.iid)});
  }
  return member;
}

InterfaceDescription Describe(const DispatchTable& table) {
  InterfaceDescription all{
      table.interfaceName, *table.iid, table.limit, table.named == NamedArgumentUse::kHonoured, {}, {}};
  for (std::size_t i = 0; i < table.memberCount; ++i) all.members.push_back(Describe(table.members[i]));
  for (std::size_t i = 0; i < table.nameCount; ++i)
    all.names.push_back({table.names[i].name.data(), table.names[i].id});
  return all;
}

}  // namespace

std::vector<InterfaceDescription> DescribeInterfaces() {
  std::vector<InterfaceDescription> all;
  for (const DispatchTable* table : kTables) all.push_back(Describe(*table));
  return all;
}

}  // namespace qv
