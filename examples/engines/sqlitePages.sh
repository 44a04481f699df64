#!/bin/sh
# The pages of a document as a table of SQLite, without anything between: the rows go from the tool
# into the shell of the database.
#
# usage: sqlitePages.sh FILE DATABASE
set -eu
file=$1
database=$2
nuxml=${NUXML:-nuxml}

"$nuxml" records --columns @id,@language,title,size --csv --jobs 2 dump/page "$file" |
    sqlite3 "$database" \
        "create table pages (id text, language text, title text, size integer)" \
        ".import --csv /dev/stdin pages"
sqlite3 "$database" "select language, count(*), sum(size) from pages group by language"
