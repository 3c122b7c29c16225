// Walks a table that a script answers: its columns, then its rows. One line for each, with blanks between.
//   walk_table http://127.0.0.1:8080
#include <iostream>

#include "qvscriptwells/qvscriptwells.h"

namespace {

constexpr char16_t kScript[] = u"[{city: 'Rome', people: 2748109}, {city: 'Bern', people: 134591}]";

std::int32_t ShowColumns(qv::IRecordList* table) {
  qv::IRecordListHeaders* given = nullptr;
  qv::ThrowIfFailed(table->GetHeaders(&given));
  const qv::IRecordListHeadersPtr headers(given, false);
  std::int32_t count = 0;
  qv::ThrowIfFailed(headers->GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    qv::IRecordListHeader* header = nullptr;
    qv::ThrowIfFailed(headers->GetHeader(i, &header));
    qv::WideString name;
    qv::ThrowIfFailed(qv::IRecordListHeaderPtr(header, false)->GetDisplayName(&name));
    std::cout << qv::ToUtf8(name) << (i + 1 < count ? " " : "\n");
  }
  return count;
}

void ShowRow(qv::IUnknown* row, std::int32_t columns) {
  const qv::IRecordListRecordPtr record = qv::As<qv::IRecordListRecord>(row);
  for (std::int32_t i = 0; i < columns; ++i) {
    qv::Variant value;
    qv::ThrowIfFailed(record->GetValue(i, &value));
    const bool hasText = qv::Succeeded(qv::VariantChangeType(&value, value, qv::VT_BSTR));
    std::cout << (hasText ? qv::ToUtf8(value.Text()) : "(object)") << (i + 1 < columns ? " " : "\n");
  }
}

void WalkTable(qv::IRecordList* table) {
  const std::int32_t columns = ShowColumns(table);
  qv::IRecordListCursor* given = nullptr;
  qv::ThrowIfFailed(table->OpenCursor(qv::VARIANT_TRUE, &given));
  const qv::IRecordListCursorPtr cursor(given, false);
  qv::VARIANT_BOOL more = qv::VARIANT_FALSE;
  for (;;) {
    qv::ThrowIfFailed(cursor->HasMore(&more));
    if (more == qv::VARIANT_FALSE) return;
    qv::IUnknown* row = nullptr;
    qv::ThrowIfFailed(cursor->Next(&row));
    ShowRow(boost::intrusive_ptr<qv::IUnknown>(row, false).get(), columns);
  }
}

void AskForATable(const char* server) {
  const qv::XmlLibraryHold hold;
  const auto provider = qv::CreateSimpleServiceProvider(qv::CreateSimpleHost({u"joe"}).get());
  const auto client = qv::CreateQvScriptwells(qv::FromUtf8(server), u"", provider.get());
  const auto model = qv::ModelOf(client.get());
  qv::ThrowIfFailed(model->CreateUserSession(u"Username=joe;Password=secret;"));
  qv::Variant answer;
  qv::ThrowIfFailed(model->Execute(u"JavaScript", kScript, nullptr, &answer));
  const qv::IRecordListPtr table = qv::As<qv::IRecordList>(answer.Object());
  if (table) WalkTable(table.get());
  qv::ThrowIfFailed(model->CloseUserSession());
}

}  // namespace

int main(int argc, char** argv) {
  try {
    AskForATable(argc > 1 ? argv[1] : "http://127.0.0.1:8080");
    return 0;
  } catch (const qv::_com_error& error) {
    std::cerr << "failed: " << qv::ToUtf8(error.Description()) << "\n";
  } catch (const qv::EQvException& error) {  // the XML library cannot be started
    std::cerr << "failed: " << qv::ToUtf8(error.Description()) << "\n";
  }
  return 1;
}
