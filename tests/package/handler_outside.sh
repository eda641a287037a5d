. "${0%/*}/expect.sh"
work="$1.tally"
rm -rf "$work"
"$CMAKE" -S "$SOURCE/examples/tally_handler" -B "$work" -D CMAKE_PREFIX_PATH="$1" \
  -D CMAKE_CXX_COMPILER="$CXX" >"$work.log"
"$CMAKE" --build "$work" --parallel 2 >>"$work.log"
"$CMAKE" --install "$work" --prefix "$1" >>"$work.log"

ini="$1/etc/quenlatrix/Configuration/handlers.ini"
printf '\n[Tally]\nServerPath=../../lib/quenlatrix/tally_handler.so\nLoadHandler=1\n' >>"$ini"
sed -i 's/^\[Handlers\]$/&\nTally=/' "$ini"

beanhost="$1/bin/beanhost"
expect "*used: serves TALLY from*" "$beanhost" handlers
expect "2" "$beanhost" call TALLY://fruit addAll '["pear","apple"]'
expect "*> walk fruit
pear
apple
> new same TALLY://fruit
> call same count pear
2
> call list add \"bean\"
true" "$beanhost" run - <<'SCRIPT'
new fruit TALLY://fruit
new list java.util.ArrayList
call fruit addAll ["apple","pear"]
call fruit add pear
walk fruit
new same TALLY://fruit
call same count pear
call list add "bean"
SCRIPT
if "$beanhost" call TALLY://fruit add '""' 2>"$work.err"; then
  echo "an empty word was counted"
  exit 1
fi
expect "*expected a word, found an empty text" cat "$work.err"
