#!/usr/bin/env bash
# A host of Quarry in the shell: quarry-ask shows the dialog and prints the
# condition; sqlite3 runs it on the station's seal database.
#   ask-seal-verifications.sh SEAL.db [LOGTYPE]     (default YYRZ)
set -euo pipefail
db=$1
log=${2:-YYRZ}

status=0
condition=$(quarry-ask complex "$log" --list-a "1=自动验印,2=人工验印" --list-b "0=通过,1=不通过" \
    --clerk-len 4 --acc-len 17 --cheque-len 8 --show-wdh --show-yjk) || status=$?
case $status in
    0) sqlite3 "$db" "SELECT OPDATE, OPCODE, ACCNO, RESULT FROM YYLOG$condition" ;;
    1) echo "nothing asked for" ;;
    *) exit "$status" ;;
esac
