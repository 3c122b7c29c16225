#include "devservice/workers/script_messages.h"

namespace qv::devservice {
namespace {

std::string TakeText(nlohmann::json& object, const char* key) {
  return std::move(object.at(key).get_ref<std::string&>());
}

// Whole numbers only: a worker may send anything, and converting another number is undefined.
std::int64_t WholeIn(const nlohmann::json& message) {
  return message.get_ref<const nlohmann::json::number_integer_t&>();
}
std::uint64_t CountIn(const nlohmann::json& message) {
  return message.get_ref<const nlohmann::json::number_unsigned_t&>();
}

nlohmann::json FileJobToJson(const FileJob& job) {
  nlohmann::json readable = nlohmann::json::array();
  for (const ReadableFile& file : job.readable) readable.push_back({file.ticket, file.path, file.size});
  return {{"readable", std::move(readable)},
          {"tickets", job.tickets},
          {"ticketsLeft", job.ticketsLeft},
          {"newFilesLeft", job.newFilesLeft},
          {"newFilesPath", job.newFilesPath},
          {"uploadUrl", job.uploadUrl},
          {"fileUrl", job.fileUrl}};
}

FileJob FileJobFromJson(const nlohmann::json& message) {
  FileJob job;
  for (const nlohmann::json& file : message.at("readable")) {
    job.readable.push_back(
        {file.at(0).get<std::string>(), file.at(1).get<std::string>(), CountIn(file.at(2))});
  }
  job.tickets = message.at("tickets").get<std::vector<std::string>>();
  job.ticketsLeft = CountIn(message.at("ticketsLeft"));
  job.newFilesLeft = CountIn(message.at("newFilesLeft"));
  job.newFilesPath = message.at("newFilesPath").get<std::string>();
  job.uploadUrl = message.at("uploadUrl").get<std::string>();
  job.fileUrl = message.at("fileUrl").get<std::string>();
  return job;
}

nlohmann::json MadeFilesToJson(const MadeFiles& made) {
  nlohmann::json files = nlohmann::json::array();
  for (const NewFile& file : made.files) files.push_back({file.id, file.name, file.ticket});
  return {{"tickets", made.tickets}, {"files", std::move(files)}};
}

MadeFiles MadeFilesFromJson(const nlohmann::json& message) {
  MadeFiles made;
  made.tickets = message.at("tickets").get<std::vector<std::string>>();
  for (const nlohmann::json& file : message.at("files")) {
    made.files.push_back(
        {file.at(0).get<std::string>(), file.at(1).get<std::string>(), file.at(2).get<std::string>()});
  }
  return made;
}

nlohmann::json TableToJson(const Table& table) {
  nlohmann::json columns = nlohmann::json::array();
  for (const TableColumn& column : table.columns)
    columns.push_back({column.name, column.displayName, column.type});
  return {{"columns", std::move(columns)}, {"records", table.records}};
}

Table TableFromJson(const nlohmann::json& message) {
  Table table;
  for (const nlohmann::json& column : message.at("columns")) {
    table.columns.push_back(
        {column.at(0).get<std::string>(), column.at(1).get<std::string>(), column.at(2).get<std::string>()});
  }
  table.records = message.at("records").get<std::string>();
  return table;
}

}  // namespace

nlohmann::json ToJson(const ScriptJob& job) {
  nlohmann::json parameters = nlohmann::json::array();
  for (const Parameter& parameter : job.parameters) {
    parameters.push_back({{"name", parameter.name}, {"type", parameter.type}, {"text", parameter.text}});
  }
  return {{"code", job.code}, {"parameters", std::move(parameters)}, {"files", FileJobToJson(job.files)}};
}

nlohmann::json ToJson(const ConsoleMessage& message) {
  return {{"console", message.level}, {"text", message.text}};
}

bool IsConsoleMessage(const nlohmann::json& message) {
  return message.contains("console");
}

ConsoleMessage ConsoleFromJson(const nlohmann::json& message) {
  return {message.at("console").get<std::string>(), message.at("text").get<std::string>()};
}

nlohmann::json ToJson(const ScriptResult& result) {
  return {{"kind", static_cast<int>(result.kind)},
          {"type", result.type},
          {"text", result.text},
          {"code", result.code},
          {"source", result.source},
          {"files", MadeFilesToJson(result.files)},
          {"table", TableToJson(result.table)}};
}

ScriptJob JobFromJson(nlohmann::json message) {
  ScriptJob job;
  job.code = TakeText(message, "code");
  for (nlohmann::json& item : message.at("parameters")) {
    job.parameters.push_back({TakeText(item, "name"), TakeText(item, "type"), TakeText(item, "text")});
  }
  job.files = FileJobFromJson(message.at("files"));
  return job;
}

ScriptResult ResultFromJson(const nlohmann::json& message) {
  ScriptResult result;
  result.kind = static_cast<ResultKind>(WholeIn(message.at("kind")));
  result.type = message.at("type").get<std::string>();
  result.text = message.at("text").get<std::string>();
  result.code = static_cast<int>(WholeIn(message.at("code")));
  result.source = message.at("source").get<std::string>();
  result.files = MadeFilesFromJson(message.at("files"));
  result.table = TableFromJson(message.at("table"));
  return result;
}

}  // namespace qv::devservice
