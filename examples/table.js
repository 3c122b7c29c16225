// A table with chosen columns: their types, and a name for people.
typed.table(
    {name: "string", born: "date", salary: {type: "qvdt:Money", displayName: "Salary & bonus"}},
    [{name: "Joe", born: "1990-03-05", salary: 1.5}, ["Ann", new Date(0)]])
