# The record selection of the reports written in awk, for comparison with the
# C++ reader in read_select_bench: period (stop at the first call after "to",
# "from" tested only until the period begins), direction, and an exact number
# search against a comma-separated list. Prints the number of calls selected.
#
#   mawk -v from=20270101 -v to=20270630 -v dir=In -v numbers=5551234567,5550000000 \
#        -f bench/select.awk CallLog.txt
#
# from/to are yyyymmdd; dir is In, Out, InOut or empty.
BEGIN {
  n = split(numbers, list, ",")
  for (k = 1; k <= n; k++) {
    entry = list[k]
    gsub(/^ +| +$/, "", entry)
    wanted[entry] = 1
  }
  everyDirection = (dir == "" || dir == "InOut")
  from += 0
  to += 0
}
{
  # The reader drops the character before each line feed (the CR) and trims
  # blanks; an empty line ends the log.
  line = substr($0, 1, length($0) - 1)
  if (substr(line, 1, 1) == " ") sub(/^ +/, "", line)
  if (substr(line, length(line), 1) == " ") sub(/ +$/, "", line)
  if (line == "") exit
  day = (substr(line, 7, 4) substr(line, 1, 2) substr(line, 4, 2)) + 0
  if (day > to) exit
  if (!inPeriod) {
    if (day < from) next
    inPeriod = 1
  }
  if (!everyDirection) {
    direction = substr(line, 84, 3)
    gsub(/ /, "", direction)
    if (direction != dir) next
  }
  number = substr(line, 20, 18)
  gsub(/[ ()-]/, "", number)
  if (number in wanted) selected++
}
END { print selected + 0 }
