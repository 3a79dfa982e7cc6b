# The daily call analysis and the line usage summary written in awk, for
# comparison with the report routines in analysis_bench: the same record
# selection (period with a stop at the first call after "to", direction), the
# same counting rules (a call without a direction takes the kind of the call
# before it in the daily analysis and is not counted in line usage; line
# fields that are not numbers and lines above the active ones are left out),
# and the tables printed word for word as the reports' text exports show
# them, without their page headings.
#
#   mawk -v from=20270101 -v to=20271231 -v dir=InOut -v lines=4 \
#        [-v tables=daily|lines] -f bench/analysis.awk CallLog.txt
#
# from/to are yyyymmdd; dir is In, Out, InOut or empty; lines is the number
# of active lines; tables chooses one report's tables (both when not given).
BEGIN {
  everyDirection = (dir == "" || dir == "InOut")
  doDaily = (tables != "lines")
  doLines = (tables != "daily")
  from += 0
  to += 0
  lines += 0
  split("Sunday Monday Tuesday Wednesday Thursday Friday Saturday", dayName, " ")
  for (k = 1; k <= 7; k++) shortName[k] = substr(dayName[k], 1, 3)
  lastKind = 0
}

# Weekday 1 = Sunday of a Gregorian date (Zeller's congruence).
function weekday(y, m, d,    h) {
  if (m < 3) { m += 12; y-- }
  h = (d + int(13 * (m + 1) / 5) + y + int(y / 4) - int(y / 100) + int(y / 400)) % 7
  return (h + 6) % 7 + 1
}

function trim(s) {
  sub(/^ +/, "", s)
  sub(/ +$/, "", s)
  return s
}

# Hour 0..23 of h:mm or hh:mm[:ss], with or without AM/PM (A/P) in any case.
function hourOf(t,    h) {
  h = substr(t, 1, index(t, ":") - 1) + 0
  if (index(t, "P") || index(t, "p")) return h % 12 + 12
  if (index(t, "A") || index(t, "a")) return h % 12
  return h
}

# Seconds of h:mm:ss or mm:ss; any other shape counts 0.
function secondsOf(t,    n) {
  n = split(t, part, ":")
  if (n == 3) return part[1] * 3600 + part[2] * 60 + part[3]
  if (n == 2) return part[1] * 60 + part[2]
  return 0
}

function duration(s,    m) {
  if (s < 0) s += 86400
  m = int(s / 60)
  if (m < 60) return sprintf("%d:%02d", m, s % 60)
  return sprintf("%d:%02d:%02d", int(m / 60), m % 60, s % 60)
}

function hourLabel(h,    start, next_) {
  if (h == 0) return "12:00 - 1:00 AM"
  if (h == 11) return "11:00 - 12:00 AM"
  if (h == 23) return "11:00 - 12:00 PM"
  start = h > 12 ? h - 12 : h
  next_ = (h + 1) % 12
  if (next_ == 0) next_ = 12
  return start ":00 - " next_ ":00 " (h + 1 < 12 ? "AM" : "PM")
}

{
  # The reader drops the character before each line feed (the CR) and trims
  # blanks; an empty line ends the log. The logging program's lines start
  # with the date, so the trimming is only done when a line needs it.
  if (substr($0, 1, 1) == " " || length($0) < 12) {
    line = trim(substr($0, 1, length($0) - 1))
    if (line == "") exit
  } else {
    line = $0
  }
  dateText = substr(line, 1, 10)
  if (dateText != lastDateText) {
    lastDateText = dateText
    y = substr(dateText, 7, 4) + 0
    m = substr(dateText, 1, 2) + 0
    d = substr(dateText, 4, 2) + 0
    day = y * 10000 + m * 100 + d
    wd = weekday(y, m, d)
  }
  if (day > to) exit
  if (!inPeriod) {
    if (day < from) next
    inPeriod = 1
  }
  direction = substr(line, 84, 3)
  if (direction == "In ") direction = "In"
  else if (direction != "Out") direction = trim(direction)
  if (!everyDirection && direction != dir) next

  # Daily call analysis.
  if (doDaily) {
    if (direction == "In") lastKind = 1
    else if (direction == "Out") lastKind = 2
    h = hourOf(substr(line, 12, 7))
    dayCount[wd * 4 + lastKind]++
    dayCount[wd * 4 + 3]++
    hourCount[h * 10 + wd]++
    hourCount[h * 10 + 8]++
  }

  # Line usage.
  if (!doLines) next
  lineText = substr(line, 80, 3)
  if (lineText !~ /^ *[0-9]+ *$/) next
  n = lineText + 0
  if (n > lines) next
  if (direction == "In") kind = 1
  else if (direction == "Out") kind = 2
  else next
  seconds = secondsOf(trim(substr(line, 88, 7)))
  total[n * 5 + kind]++
  total[n * 5 + 3]++
  total[n * 5 + 4] += seconds
  week[n * 8 + wd]++
  weekSeconds[wd] += seconds
}

END {
  if (doDaily) printDaily()
  if (doLines) printLines()
}

function printDaily(    k, c, h, row, sum) {
  print "Day Of Week Summary"
  print "Inbound Outbound Total"
  for (k = 1; k <= 7; k++) {
    print dayName[k], dayCount[k * 4 + 1] + 0, dayCount[k * 4 + 2] + 0, dayCount[k * 4 + 3] + 0
    for (c = 1; c <= 3; c++) sum[c] += dayCount[k * 4 + c]
  }
  print "Totals", sum[1] + 0, sum[2] + 0, sum[3] + 0
  print "Time Of Day Summary"
  print "Sun Mon Tue Wed Thu Fri Sat Total"
  for (h = 0; h < 24; h++) {
    row = hourLabel(h)
    for (k = 1; k <= 8; k++) row = row " " (hourCount[h * 10 + k] + 0)
    print row
  }
}

function printLines(    n, c, k, row, lineSum, weekSum) {
  print "Line Usage Totals"
  print "Inbound Outbound Total Calls Total Time"
  for (n = 1; n <= lines; n++) {
    print "Line " n, total[n * 5 + 1] + 0, total[n * 5 + 2] + 0, total[n * 5 + 3] + 0, duration(total[n * 5 + 4] + 0)
    for (c = 1; c <= 4; c++) lineSum[c] += total[n * 5 + c]
  }
  print "Total Calls", lineSum[1] + 0, lineSum[2] + 0, lineSum[3] + 0, duration(lineSum[4] + 0)
  print "Day of the Week Line Usage Summary"
  print "Sun Mon Tue Wed Thu Fri Sat"
  for (n = 1; n <= lines; n++) {
    row = "Line " n
    for (k = 1; k <= 7; k++) { row = row " " (week[n * 8 + k] + 0); weekSum[k] += week[n * 8 + k] }
    print row
  }
  row = "Total Calls"
  for (k = 1; k <= 7; k++) row = row " " (weekSum[k] + 0)
  print row
  row = "Total Time"
  for (k = 1; k <= 7; k++) row = row " " duration(weekSeconds[k] + 0)
  print row
}
