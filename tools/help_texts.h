// The texts of the help of each command, as help_format.h takes them: examples, and notes, whose lines are
// joined and broken again, but for those that begin with a blank.
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
  scriptwells help registry set)";

// The namespace stands between the two.
inline constexpr char kDocumentStart[] =
    R"(FILE is an XML document that tells its language and holds its code:
  <Scriptwell Language="JavaScript"
              xmlns=")";
inline constexpr char kDocumentEnd[] = R"(">
    <Code>parameters.a + 1</Code>
  </Scriptwell>
It may be in any encoding. Its path cannot hold '#', '?' or '\'.

)";

// For both kinds of script.
inline constexpr char kValuesNotes[] =
    R"(Parameters are written name=type:value. Types: byte, short, int, long, boolean, float, double, string,
date, time, datetime, duration, file. Everything behind the first ':' is the value, so a string may hold '='
and ':' and may be empty.
  date      YYYY-MM-DD                              -p on=date:2024-03-05
  time      hh:mm or hh:mm:ss or hh:mm:ss.sss       -p at=time:10:15:30
  datetime  a date, T and a time                    -p when=datetime:2024-03-05T10:15:30
  duration  P[nY][nM][nD][T[nH][nM][nS]], - before  -p for=duration:P1DT2H
  file      the path of a file, which is uploaded   -p doc=file:report.pdf
Dates and times travel without zone. float, double and the seconds of a duration travel with 6
significant digits. A datetime at midnight travels as a date, and 1899-12-30 as a time.

An upload needs the server's upload scripts in the folder ClientScripts of the home directory ('scriptwells
registry set home DIR'); --local brings its own. A file's path cannot hold '\'. Long transfers show their
progress on a terminal, but not with --json. --save replaces no file and saves none whose name begins with
'.', unless --force is given.

The password never stands on the command line. It comes from the first of: --password-file,
--password-stdin, the variable SCRIPTWELLS_PASSWORD, a question on the terminal; else it is empty.
A user name, password or replica id cannot hold ';' or '='.

A table is printed as one for people, cut to the width of a terminal but never into a pipe; with -o csv as
CSV (RFC 4180), where --null tells what stands for no value; with -o json as {"columns":...,"rows":...}. CSV
keeps texts that a spreadsheet takes for formulas. Tables cannot be sent as parameters.

What the protocol's client reads back: a long answer arrives as an empty value, a byte answer as 0, a
time without its fraction of a second, a URL without its link, and counts of a duration beyond 32767 changed;
let the script answer with a string or a double where that matters. Cells of a table without text arrive as
0, false or an empty string, and dates without text end the table as not understood (7). A script that
answers null or nothing (undefined) ends as an answer that is not understood (7).)";

inline constexpr char kRunExamples[] =
    R"(  scriptwells run --local -e 'parameters.a + parameters.b' -p a=int:2 -p b=int:40
  scriptwells run --local examples/hello.js -p name=string:World --output table
  scriptwells run --local -e 'parameters.doc.text().length' -p doc=file:notes.txt
  scriptwells run --local -e 'publish("out.txt", "text")' --save /tmp
  scriptwells run --local -e '[{city: "Rome", people: 2748109}]' --output csv --null NULL
  echo '6 * 7' | scriptwells run - --server http://127.0.0.1:8080 --user joe --json)";

inline constexpr char kDocumentExamples[] =
    R"(  scriptwells run-document --local examples/document.xml -p for=duration:P1DT2H
  scriptwells run-document report.xml -p year=int:2024 --server http://127.0.0.1:8080 --user joe)";

inline constexpr char kDownloadExamples[] =
    R"(  scriptwells download 'http://127.0.0.1:8080/files/7?ticket=1' /tmp --user joe
  scriptwells download "$URL" --usid "$SESSION" --json)";

inline constexpr char kDownloadNotes[] =
    R"(The file gets the name that the server gives; nothing is left behind when the download fails. A name that
exists in DIR is refused, and so is one that begins with '.'; --force saves the file all the same. Names
with control characters are always refused. The path is printed.

The session is opened on the server of the URL if there is no other one, and its id is sent with the
request. A file that a script publishes for its own session only is saved with run --save, or with the
--usid of that session (scriptwells session open).

The password comes from the first of: --password-file, --password-stdin, the variable
SCRIPTWELLS_PASSWORD, a question on the terminal; else it is empty.)";

inline constexpr char kServeExamples[] =
    R"(  scriptwells serve --port 8080 --users-file users.txt
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
    R"(open prints the id of a session that stays open until it is closed, or until the server forgets it. run,
run-document, download and close take it with --usid. Whoever knows the id has the session: the variable
SCRIPTWELLS_USID keeps it out of the list of processes, which others on this machine can read.)";

inline constexpr char kServeNotes[] =
    R"(The service is for development: it forgets everything when it stops, and it runs the scripts that it is sent.
It prints its address on standard output and stops at Ctrl-C or SIGTERM.
The users file holds one name:password per line; '#' starts a comment line. Without it every user name
is welcome, with any password.
Scripts and downloads work at once. A client uploads files with the scripts that it finds in its home directory,
which its registry names. --home DIR puts the service's own there where they are missing, and
DIR/serve.reg, a registry that names DIR: clients on this machine that run with QV_REGISTRY=DIR/serve.reg upload files
until the service stops and removes it. Nobody's settings change but with --install-home.)";

inline constexpr char kDescribeExamples[] = R"(  scriptwells describe Parameters
  scriptwells describe Parameters.Add)";

inline constexpr char kDescribeNotes[] =
    R"(OBJECT is Parameters, IParameters or, for one member, Parameters.Add; without it all are shown.
Late-binding programs reach every member by its id, or by its name in any case.)";

inline constexpr char kRegistryExamples[] =
    R"(  scriptwells registry get home
  scriptwells registry set home /usr/share/quorvane
  scriptwells registry remove home
  scriptwells registry list --json)";

inline constexpr char kRegistryNotes[] =
    R"(The registry tells the library where the installation has its home directory. Keys are paths such as
SOFTWARE\Quorvane\Quorvane\HomeDir, for which "home" is a short name. The first of these files that has a
key decides: the one that the variable QV_REGISTRY names, quorvane/registry.reg below $XDG_CONFIG_HOME (else
~/.config), the installed one. set writes to the first of them that can be written. "HKEY_LOCAL_MACHINE\" in
front of a key may be left out; "HKEY_CLASSES_ROOT\" stands for "SOFTWARE\Classes\". list shows texts with a
name, too, which get, set and remove do not reach.

A damaged file counts as absent and is told on standard error (6). get and remove end with 1 when no
file has the key.)";

inline constexpr char kRegistrySetExamples[] =
    R"(  scriptwells registry set home /usr/share/quorvane
  scriptwells registry set --json -- 'SOFTWARE\Example\Offset' -5)";

inline constexpr char kRegistrySetNotes[] =
    R"(A VALUE or KEY that begins with '-' stands behind "--", and options before it.)";

}  // namespace qv::cli
