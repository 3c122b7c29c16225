# Completion of scriptwells for fish. It runs no command that calls a server.

# Sets the command on the line, such as "scriptwells session open", and its arguments, from the words before the cursor.
# Each line is read once for all conditions.
function __scriptwells_read
    set -l words (commandline -opc)
    test "$words" = "$__scriptwells_words"; and return
    set -g __scriptwells_words $words
    set -g __scriptwells_path scriptwells
    set -g __scriptwells_arguments
    set -l plain no
    set -l value no
    for word in $words[2..-1]
        if test $value = yes
            set value no
        else if test $plain = no; and test "$word" = --
            set plain yes
        else if test $plain = no; and string match -q -- '-*' $word
            __scriptwells_takes_value "$__scriptwells_path $word"; and set value yes
        else if not set -q __scriptwells_arguments[1]; and __scriptwells_is_command "$__scriptwells_path $word"
            set __scriptwells_path "$__scriptwells_path $word"
        else
            set -a __scriptwells_arguments $word
        end
    end
end

# Whether this command is on the line.
function __scriptwells_at
    __scriptwells_read
    test "$__scriptwells_path" = $argv[1]
end

# The same, with the cursor in the argument of this number, or in a later one: "1", "1+".
function __scriptwells_argument
    __scriptwells_at $argv[1]; or return
    set -l number (math (count $__scriptwells_arguments) + 1)
    test $number = $argv[2]; or string match -q '*+' $argv[2]
end

# The word at the cursor without the name of its option.
function __scriptwells_value
    string replace -r '^--[^=]*=' '' -- (commandline -ct)
end

# name=type:value
function __scriptwells_parameter
    set -l value (__scriptwells_value)
    if string match -qr '^[^=]*=file:' -- $value
        set -l start (string match -r '^[^=]*=file:' -- $value)
        set -l file (string replace -r '^[^=]*=file:' '' -- $value)
        printf '%s\n' $start(__fish_complete_path $file)
    else if string match -q '*=*' -- $value
        set -l name (string replace -r '=.*' '' -- $value)
        printf '%s\n' $name=(__scriptwells_types):
    end
end

function __scriptwells_directories
    __fish_complete_directories (__scriptwells_value)
end

function __scriptwells_profiles
    scriptwells config profiles 2>/dev/null </dev/null
end

# Objects, and after a point their members.
function __scriptwells_object
    if string match -q '*.*' -- (__scriptwells_value)
        __scriptwells_members
    else
        __scriptwells_objects
    end
end

# The words of a command, for `help`.
function __scriptwells_topic
    __scriptwells_commands (string join ' ' scriptwells $__scriptwells_arguments)
end

complete -c scriptwells -f

# What follows is made from the options of the program.
