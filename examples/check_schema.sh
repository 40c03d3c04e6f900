#!/bin/sh
# check_schema.sh TRANSCRIBE MLDS_TESTASM RULES SAMPLE FOLDER: assembles the rules with the names that
# the program prints, takes them apart again, and lets the program transcribe by what came out.
set -eu
transcribe=$1
testasm=$2
rules=$3
sample=$4
folder=$5
rm -rf "$folder"
mkdir -p "$folder"
cd "$folder"

"$transcribe" --schema >names.txt
"$testasm" "$rules" --schema names.txt --output rules.bin
"$testasm" rules.bin --schema names.txt --disassemble >again.mta
"$testasm" again.mta --schema names.txt --output again.bin
cmp rules.bin again.bin
"$transcribe" "$sample" >wanted.txt
"$transcribe" --rules again.mta "$sample" >found.txt
diff -u wanted.txt found.txt
[ -s found.txt ]
