// The commands of the program. All of them throw Failure.
#pragma once

#include <iosfwd>

#include "devservice/workers/started_worker.h"
#include "tools/input/parsed_options.h"
#include "tools/report/failure.h"

namespace qv::cli {

// `scriptwells run` and `scriptwells run-document`: opens a session, runs the script, prints its answer on
// `out` and always closes the session. Throws the first failure; prints notes on `err`.
void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err);

// The same with --local: in a service of this program, by `worker` unless that is none.
void LocalRunCommand(const RunOptions& options, devservice::StartedWorker worker, std::ostream& out,
                     std::ostream& err);

// `scriptwells map`: runs the script once for each row, and prints the answers on `out` or writes them into a
// file. Throws kFault if a row has no result. Prints notes and progress on `err`.
void MapCommand(const MapOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells shell`: runs scripts as they are typed, in one session, until the input ends. Reports failures
// on `err` if a person types; otherwise throws the first.
void ShellCommand(const ShellOptions& options, std::ostream& out, std::ostream& err);

// The same with --local: in a service of this program, by `worker` unless that is none.
void LocalShellCommand(const ShellOptions& options, devservice::StartedWorker worker, std::ostream& out,
                       std::ostream& err);

// `scriptwells download`: opens a session (or uses that of --usid), downloads the file, prints its path on
// `out` and always closes the session. Prints notes on `err`.
void DownloadCommand(const DownloadOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells session open` and `scriptwells session close`: opens a session, prints its id on `out` and
// leaves it open; or closes the session of --usid. Closes a new session again if its id cannot be printed.
// Prints notes on `err`.
void SessionCommand(const SessionCommandOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells tape`: prints the result on `out`. Returns kFault if two tapes differ, or if one does not
// agree with itself.
ExitStatus TapeCommand(const TapeOptions& options, std::ostream& out);

// `scriptwells serve`: runs the development service until Ctrl-C, SIGTERM or the end of its input. Prints its
// address as the only line on `out`, and notes on `err`.
void ServeCommand(const ServeOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells registry`: prints the result on `out`, and damaged files on `err`. Returns kLocal if a file is
// damaged. Throws kFault if no file has the key, kLocal if no file can be written, and for a key or value
// that a file cannot hold.
ExitStatus RegistryCommand(const RegistryOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells config` except `config set`: prints the settings, the path, or the names of the profiles, or
// removes a setting. Throws kFault if the profile does not have it, kLocal for a file that cannot be used.
void ConfigCommand(const ConfigOptions& options, std::ostream& out);

// `scriptwells config set`: checks the value as a command that calls does, and writes it. Prints notes on
// `err`.
void ConfigSetCommand(const ConfigOptions& options, std::ostream& out, std::ostream& err);

// `scriptwells describe`: prints all interfaces, one of them, or one member ("Parameters", "IParameters",
// "Parameters.Add", in any case). Throws kUsage for an unknown name, with the object that has such a member,
// else with the closest name, if there is one.
ExitStatus DescribeCommand(const DescribeOptions& options, std::ostream& out);

// `scriptwells check`: tries a server step by step and prints on `out` what it found. Returns kOk if a client
// can work with it.
ExitStatus CheckCommand(const CheckOptions& options, std::ostream& out);

// `scriptwells explain`: prints on `out` what a saved request or answer contains, and which rules an answer
// breaks. Returns kAnswer if they keep clients from its value.
ExitStatus ExplainCommand(const ExplainOptions& options, std::ostream& out);

}  // namespace qv::cli
