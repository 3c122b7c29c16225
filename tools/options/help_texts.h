// The help texts of all commands, in the form of help_format.h: examples and notes.
#pragma once

namespace qv::cli {

inline constexpr char kProgramExamples[] = R"(  scriptwells run --local -e '6 * 7'
  scriptwells run report.js --server https://scripts.example --user joe -p year=int:2024
  scriptwells run-document report.xml --server https://scripts.example --user joe
  scriptwells run --local -e 'parameters.doc.size' -p doc=file:report.pdf
  scriptwells download 'http://scripts.example/files/7?t=1' /tmp --user joe
  scriptwells serve --port 8080
  scriptwells registry list)";

inline constexpr char kProgramNotes[] =
    R"(Exit codes: 0 ok, 1 script or server fault, 2 usage, 3 server not reached, 4 timeout, 5 session refused,
6 local file or parameter, 7 answer not understood, 130 interrupted.)";

inline constexpr char kHelpExamples[] = R"(  scriptwells help run
  scriptwells help profiles
  scriptwells help registry set)";

// The namespace is inserted between these two.
inline constexpr char kDocumentStart[] =
    R"(FILE is an XML document that names its language and holds its code:
  <Scriptwell Language="JavaScript"
              xmlns=")";
inline constexpr char kDocumentEnd[] = R"(">
    <Code>parameters.a + 1</Code>
  </Scriptwell>
It may be in any encoding. Its path cannot hold '#', '?' or '\'.

)";

// For scripts and script documents.
inline constexpr char kValuesNotes[] =
    R"(Parameters are written name=type:value. Types: byte, short, int, long, boolean, float, double, string,
date, time, datetime, duration, file. Everything after the first ':' is the value, so a string may hold '='
and ':' and may be empty.
  date      YYYY-MM-DD                              -p on=date:2024-03-05
  time      hh:mm or hh:mm:ss or hh:mm:ss.sss       -p at=time:10:15:30
  datetime  a date, T and a time                    -p when=datetime:2024-03-05T10:15:30
  duration  P[nY][nM][nD][T[nH][nM][nS]], - before  -p for=duration:P1DT2H
  file      the path of a file, which is uploaded   -p doc=file:report.pdf
Dates and times are sent without a time zone. float, double and the seconds of a duration are sent with 6
significant digits. A datetime at midnight is sent as a date, and 1899-12-30 as a time.

An upload needs the server's upload scripts in the folder ClientScripts of the home directory ('scriptwells
registry set home DIR'); --local needs none. A file's path cannot hold '\'. Long transfers show their
progress on a terminal, but not with --json. Without --force, --save replaces no file and saves no file
whose name begins with '.'.

The password is never on the command line. It comes from the first of: --password-command, --password-file
or --password-stdin, the variable SCRIPTWELLS_PASSWORD, the profile, a question on the terminal; else it is empty.
A user name, password or replica id cannot hold ';' or '='.

A table is printed with aligned columns, cut to the width of a terminal but never in a pipe; with -o csv as
CSV (RFC 4180), where --null sets the text for no value; with -o json as {"columns":...,"rows":...}. CSV
keeps texts that a spreadsheet reads as formulas. Tables cannot be sent as parameters.

Some answers do not arrive as they were sent: a long arrives as an empty value, a byte as 0, a time without
its fraction of a second, a URL without its link, and a count of a duration above 32767 changed. Where that
matters, let the script answer with a string or a double. A cell of a table without text arrives as 0, false
or an empty string; a date without text makes the whole table fail (exit code 7). A script that returns null
or nothing (undefined) fails with exit code 7.)";

inline constexpr char kRunExamples[] =
    R"(  scriptwells run --local -e 'parameters.a + parameters.b' -p a=int:2 -p b=int:40
  scriptwells run --local examples/hello.js -p name=string:World --output table
  scriptwells run --local -e 'parameters.doc.text().length' -p doc=file:notes.txt
  scriptwells run --local -e 'publish("out.txt", "text")' --save /tmp
  scriptwells run --local -e '[{city: "Rome", people: 2748109}]' --output csv --null NULL
  scriptwells run --local report.js --watch
  echo '6 * 7' | scriptwells run - --server http://127.0.0.1:8080 --user joe --json)";

inline constexpr char kDocumentExamples[] =
    R"(  scriptwells run-document --local examples/document.xml -p for=duration:P1DT2H
  scriptwells run-document report.xml -p year=int:2024 --server http://127.0.0.1:8080 --user joe)";

inline constexpr char kMapExamples[] =
    R"(  scriptwells map price.js orders.csv --server http://127.0.0.1:8080 --user joe > prices.csv
  scriptwells map price.js orders.csv --jobs 8 --results prices.csv --user joe
  scriptwells map price.js orders.csv --jobs 8 --results prices.csv --user joe --resume
  scriptwells map -e 'parameters.a * parameters.b' numbers.csv -o json --user joe)";

inline constexpr char kMapNotes[] =
    R"(ROWS is a CSV file (RFC 4180, UTF-8). Each cell of its head is a parameter, name:type, with the types of
run -p; without a type it is a string. Columns of the type ignore are not sent. All rows are checked before
the first call.

The results are in the order of the rows. CSV has the row's cells and the column answer, where a table is
JSON; with -o json each line is {"row":...,"cells":...,"answer":...}. The file of rows without a result has
their cells, number and error, and can be ROWS again. A row fails if the script reports a fault; the others
go on, and that session is replaced, since the server may have ended it. All ends if the server cannot be
reached or opens no session. Ctrl-C gives calls that run 2 seconds to end, and cancels the rest.

A request that left without an answer leaves the row's fate unknown: the script may have run. No row runs
twice, also after kill -9: --resume runs only rows without a call, from the journal of --results. Rows of
unknown fate are named, and run again with --retry-unknown only. The journal is not forced to the disk: after
a loss of power rows may run again.

Exit codes: 0 all rows have a result, 1 some have none; all others say why the rest was not run.)";

inline constexpr char kDownloadExamples[] =
    R"(  scriptwells download 'http://127.0.0.1:8080/files/7?ticket=1' /tmp --user joe
  scriptwells download "$URL" --usid "$SESSION" --json)";

inline constexpr char kDownloadNotes[] =
    R"(The server gives the file its name. A failed download leaves no file. A name that exists in DIR is
rejected, and so is one that begins with '.', unless --force is given. Names with control characters are
always rejected. The path is printed.

Without --server, the session is opened on the server of the URL. Its id is sent with the request. A file
that a script publishes for its own session only is saved with run --save, or with the --usid of that
session (scriptwells session open).

The password comes from the first of: --password-command, --password-file or --password-stdin, the variable
SCRIPTWELLS_PASSWORD, the profile, a question on the terminal; else it is empty.)";

inline constexpr char kShellExamples[] =
    R"(  scriptwells shell --local
  scriptwells shell --server https://scripts.example --user joe -p year=int:2024 --output table
  scriptwells shell --local < scripts.txt)";

inline constexpr char kShellNotes[] =
    R"(Every line is a script, or a command that begins with ':'; :help lists the commands. A script goes on in the
next line while its brackets, strings or comments are open; :{ and :}, each in its own line, enclose one of
any form. In other languages than JavaScript, a line that ends with '\' goes on in the next one. All scripts
run in one session. Ctrl-C cancels the running script and the session stays; at the prompt it clears the line.
Ctrl-D or :quit closes the session.

On a terminal lines can be edited, and TAB completes commands, parameters, files and the columns of the last
table. The history is in the file scriptwells/history below $XDG_STATE_HOME (else ~/.local/state). A line that
begins with a blank, or that holds the password, the session's id, or a value of the name password, usid or
ticket, is not in it.

If standard input is no terminal, there is no prompt, and the first failure ends the shell with its exit code.
On a terminal the shell goes on after a failure, and returns 0. --max-time limits each script.)";

inline constexpr char kCheckExamples[] =
    R"(  scriptwells check http://127.0.0.1:8080 --user joe
  scriptwells check https://scripts.example --user joe --json
  scriptwells check http://127.0.0.1:8080 --user joe --language Pascal --script 'Result := value' \
    --fault-script '' --table-script '' --upload-script '' --download-script '')";

inline constexpr char kCheckNotes[] =
    R"(The steps are those of a client: name, connection, TLS, the form of the answers in HTTP and XML, a session,
a value of each type, a fault, a table, an upload, a download. Later steps are tried after a failure where
that is possible. For each broken rule the first place is shown, with what to change, also in servers made
with gSOAP, PHP's SoapServer and npm's soap; the rules are those of 'man 7 scriptwells-protocol'. A request
whose answer a client does not read is sent once more. A step whose script is empty is not tried.

Exit codes: 0 a client can work with the server, 3 it was not reached, 4 no connection in time, 5 it
refused the session, 7 it breaks a rule or a step failed.)";

inline constexpr char kExplainExamples[] =
    R"(  scriptwells explain answer.txt
  scriptwells explain a.tape --entry 2
  curl -si -d @request.xml "$URL" | scriptwells explain - --method Execute)";

inline constexpr char kExplainNotes[] =
    R"(FILE is a request or an answer, HTTP with its head or XML alone, or a tape. Each part is shown with its line
and column in the file, or in the message of a tape: the head, the envelope, the method, the script,
parameters and values with their types, columns and rows of a table, the fields of a fault. Of an answer the
broken rules follow, as check names them, and what this client itself makes of it: the value, the fault, or
why it refuses the answer. Passwords, session ids and upload tickets are shown as *** unless --show-secrets
is given; what a tape masks stays masked.

Exit codes: 0 a request, or an answer that clients read; 7 an answer that they do not.)";

inline constexpr char kServeExamples[] =
    R"(  scriptwells serve --port 8080 --users-file users.txt
  scriptwells serve --page
  scriptwells serve --home ~/scripts-home
  scriptwells serve --home ~/.local/share/quorvane --install-home)";

inline constexpr char kSessionExamples[] =
    R"(  export SCRIPTWELLS_SERVER=https://scripts.example
  export SCRIPTWELLS_USID=$(scriptwells session open --user joe)
  url=$(scriptwells run -e 'publish("out.txt", "text")')
  scriptwells download "$url" /tmp
  scriptwells session close)";

inline constexpr char kSessionOpenExamples[] =
    "  export SCRIPTWELLS_USID=$(scriptwells session open --server http://127.0.0.1:8080 --user joe)";

inline constexpr char kSessionCloseExamples[] =
    R"(  scriptwells session close --server http://127.0.0.1:8080
  scriptwells session close --server http://127.0.0.1:8080 --usid "$SESSION")";

inline constexpr char kSessionNotes[] =
    R"(open prints the id of a session that stays open until it is closed, or until the server removes it. run,
run-document, download and close take it with --usid. Everybody who knows the id can use the session. Others
on this machine can read the list of processes, so prefer the variable SCRIPTWELLS_USID to --usid.)";

inline constexpr char kServeNotes[] =
    R"(The service is for development: it loses all data when it stops, and it runs every script that it receives.
It prints its address on standard output and stops at Ctrl-C or SIGTERM.
The users file holds one name:password per line; '#' starts a comment line. Without it every user name
is accepted, with any password.
Scripts and downloads always work. To upload files, a client needs the upload scripts in its home directory,
which its registry names. --home DIR writes missing upload scripts into DIR, and DIR/serve.reg, a registry that names DIR:
clients on this machine that run with QV_REGISTRY=DIR/serve.reg can upload files until the service stops and
removes it. Only --install-home changes settings.
--json prints {"url":...,"home":...}, where home is the directory with the upload scripts, or null. --control
adds "control", an address of pages that show requests, with their passwords, and order faults.
--page prints a second address, in JSON as "page": a page on which you run scripts and see the requests, without their
passwords. The first browser that opens it is let in. run --local --page puts a script on such a page.
--odd makes requests fail or look strange: its names, several with '+', are listed at the address of the service
(GET /). Without n and p all requests get it; p is a chance, and seed repeats the same decisions. action
names the requests: CreateUserSession, CloseUserSession or Execute.
A program that starts the service for its tests uses --json --control --until-eof and a pipe as standard
input: the service then ends with the program.)";

inline constexpr char kDescribeExamples[] = R"(  scriptwells describe Parameters
  scriptwells describe Parameters.Add)";

inline constexpr char kDescribeNotes[] =
    R"(OBJECT is Parameters, IParameters or, for one member, Parameters.Add; without it all are shown.
Late-binding programs call every member by its id, or by its name in any case.)";

inline constexpr char kConfigExamples[] =
    R"(  scriptwells config set server https://scripts.example --profile work
  scriptwells config set password-command 'pass show scripts/joe' --profile work
  scriptwells config set default work
  scriptwells config show
  scriptwells run report.js --profile work)";

// Also the topic "profiles" of `help`.
inline constexpr char kProfilesNotes[] =
    R"(A profile is a group of settings with a name, in a file of yours: scriptwells/config.toml below
$XDG_CONFIG_HOME (else ~/.config). Commands that call a server use the profile of --profile, else that of the
variable SCRIPTWELLS_PROFILE, else the default one. The first of these gives a setting its value: its option, its
variable, the profile, its default. 'scriptwells config show' prints all with their origins, for the options
that it gets.

  default = "work"

  [profile.work]
  server = "https://scripts.example"
  user = "joe"
  password-command = "pass show scripts/joe"
  timeout = "2m"

The settings are named like their options: server, proxy, user, password-command, password-file, replica,
ca-file, cert, key, timeout, connect-timeout, max-time, language, output. The file is TOML: texts are in
quotes, and a path is absolute or begins with "~/".

A password is never in the file. password-command is a command for /bin/sh: the first line that it prints is
the password; it reads nothing, and it has to end with exit status 0. password-file names a file whose first
line is the password; nobody else may read it (chmod 600). The password is used only with the server and the
user of its profile. config show prints the command, but never runs it.

With --local only timeout, connect-timeout, max-time, language and output are used. Everything else reads no
profile. The file has to be yours, and others must not be able to write to it.)";

inline constexpr char kConfigSetExamples[] =
    R"(  scriptwells config set timeout 2m --profile work
  scriptwells config set default work
  scriptwells config set --profile work -- user -joe)";

inline constexpr char kConfigSetNotes[] =
    R"(KEY is server, proxy, user, password-command, password-file, replica, ca-file, cert, key, timeout,
connect-timeout, max-time, language or output, for which the value is checked as by the option of this name;
or default. Without --profile, the profile of SCRIPTWELLS_PROFILE is changed, else the default one. A profile
that does not exist is added. Comments and the order of the file are kept. Put "--" before a VALUE that begins
with '-', and options before "--".)";

inline constexpr char kTapeExamples[] = R"(  scriptwells tape show joe.tape
  scriptwells tape diff joe.tape other.tape
  scriptwells tape verify *.tape)";

inline constexpr char kTapeNotes[] =
    R"(A tape is what --record has written: text, with passwords, session ids and upload tickets masked. --replay
plays it, without a server.

diff leaves out times, hosts, ports and ids that the server made; it exits with 1 if anything else differs.
verify exits with 1 if values do not agree with their bytes, or lengths with their texts.)";

inline constexpr char kRegistryExamples[] =
    R"(  scriptwells registry get home
  scriptwells registry set home /usr/share/quorvane
  scriptwells registry remove home
  scriptwells registry list --json)";

inline constexpr char kRegistryNotes[] =
    R"(The library reads the home directory of the installation from the registry. Keys are paths such as
SOFTWARE\Quorvane\Quorvane\HomeDir, for which "home" is a short name. The first of these files that has a
key is used: the one that the variable QV_REGISTRY names, quorvane/registry.reg below $XDG_CONFIG_HOME (else
~/.config), the administrator's (/etc/quorvane/registry.reg), the installed one. set writes to the first of
them that can be written, but never to the installed one. The root "HKEY_LOCAL_MACHINE\" may be left out;
"HKEY_CLASSES_ROOT\" is short for "SOFTWARE\Classes\". list also shows texts with a name, which get, set and
remove do not support.

A damaged file is ignored and reported on standard error (exit code 6). get and remove return 1 if no file
has the key.)";

inline constexpr char kRegistrySetExamples[] =
    R"(  scriptwells registry set home /usr/share/quorvane
  scriptwells registry set --json -- 'SOFTWARE\Example\Offset' -5)";

inline constexpr char kRegistrySetNotes[] =
    R"(Put "--" before a KEY or VALUE that begins with '-', and options before "--".)";

}  // namespace qv::cli
