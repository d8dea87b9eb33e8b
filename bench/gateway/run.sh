#!/usr/bin/env bash
# What cnet-gateway takes and what it costs, of a build with the preset bench:
#
#   bench/gateway/run.sh rates [VALUES]    without lines, on one core, how many values a second come through
#                                          the ledger to each kind of sink, beside other publishers of the
#                                          same messages and psql copying the same rows; a minute or two
#   bench/gateway/run.sh plant [SECONDS]   25 lines of 38400 baud with 500 tags each, all changing, to an MQTT
#                                          broker: what arrives, when, and what it costs; five minutes
#   bench/gateway/run.sh dead [SECONDS]    one line with a station that answers, and 30 beside it that do not
#
# Brokers and servers are started for it on this computer.
set -euo pipefail
cd "$(dirname "$0")/../.."
here=$(pwd)/bench/gateway
bin=$(pwd)/build/bench/bin
folder=$(mktemp -d)
servers=()
end() {
  [ ${#servers[@]} -eq 0 ] || kill -INT "${servers[@]}" 2>/dev/null || true
  wait
  rm -rf "$folder"
}
trap end EXIT

start_postgres() {
  programs=$(ls -d /usr/lib/postgresql/*/bin | tail -1)
  local as_other=()
  if [ "$(id -u)" = 0 ]; then
    chown postgres: "$folder"
    as_other=(setpriv --reuid=postgres --regid=postgres --clear-groups)
  fi
  cd "$folder"
  "${as_other[@]}" "$programs/initdb" -D "$folder/data" -E UTF8 --locale=C -A trust -U bench >initdb.log
  "${as_other[@]}" taskset -c 1 "$programs/postgres" -D "$folder/data" -k "$folder" -p "$1" -h "" \
    -c max_wal_size=4GB >server.log 2>&1 &
  servers+=($!)
  until "$programs/pg_isready" -q -h "$folder" -p "$1"; do sleep 0.1; done
}

start_broker() {
  printf 'user root\nlistener %d 127.0.0.1\nallow_anonymous true\nset_tcp_nodelay true\n' "$1" >"$folder/broker.conf"
  PATH=$PATH:/usr/sbin taskset -c 1 mosquitto -c "$folder/broker.conf" >"$folder/broker.log" 2>&1 &
  servers+=($!)
  until mosquitto_pub -h 127.0.0.1 -p "$1" -t started -m yes 2>/dev/null; do sleep 0.1; done
}

# The gateway or what it is compared with has core 0 alone, the servers core 1.
rates() {
  local values=$1 port=$((20000 + RANDOM % 10000))
  start_postgres "$port"
  start_broker "$((port + 1))"
  local one="taskset -c 0"
  $one "$bin/bench_gateway" sqlite - "$values" "$folder"
  $one "$bin/bench_gateway" postgresql "$folder:$port" "$values" "$folder"
  $one "$bin/bench_gateway" sparkplug "$((port + 1))" "$values" "$folder"
  for kind in mqtt grouped; do
    $one "$bin/bench_gateway" "$kind" "$((port + 1))" "$values" "$folder"
    "$bin/bench_gateway" write "$kind" "$values" >"$folder/messages"
    echo "the messages of $kind, by others:"
    for other in mosquitto_pub paho; do
      $one "$here/floor.py" "$other" "$((port + 1))" "$folder/messages" "$values"
    done
  done
  if [ -d /dev/shm ]; then
    echo "with the ledger in memory, where no disk is waited for:"
    $one "$bin/bench_gateway" grouped "$((port + 1))" "$values" /dev/shm
  fi
  psql() { "$programs/psql" -q -h "$folder" -p "$port" -U bench -d postgres "$@"; }
  "$bin/bench_gateway" write rows "$values" >"$folder/rows"
  psql -c "CREATE TABLE floor (LIKE cnet.change INCLUDING DEFAULTS); CREATE INDEX ON floor (tag, time)"
  local from to
  from=$(date +%s%N)
  $one "$programs/psql" -q -h "$folder" -p "$port" -U bench -d postgres \
    -c "\copy floor (time, tag, state, number, text, truth) FROM $folder/rows"
  to=$(date +%s%N)
  awk -v n="$values" -v ns=$((to - from)) 'BEGIN { printf "%-16s %9.0f values/s\n", "psql \\copy", n / ns * 1e9 }'
  [ "$(psql -At -c 'SELECT count(*) FROM cnet.change')" = $((values + 50000)) ]
}

order=${1:-}
case "$order" in
  rates) rates "${2:-1000000}" ;;
  plant)
    for topic in grouped each; do
      echo "topics: $topic"
      "$here/plant.py" "$bin" --topic $topic --seconds "${2:-60}" --folder "$folder"
    done
    echo "topics: grouped; a tag a line, for the memory of a tag"
    "$here/plant.py" "$bin" --tags 1 --warm 5 --seconds 5 --folder "$folder"
    ;;
  dead)
    for dead in 0 30; do
      echo "stations that do not answer: $dead"
      "$here/plant.py" "$bin" --lines 1 --dead $dead --warm 60 --seconds "${2:-60}" --folder "$folder"
    done
    ;;
  *) sed -n '2,/^set/s/^# \{0,1\}//p' "$0" >&2; exit 2 ;;
esac
