#!/usr/bin/env bash
# Starts a Slurm cluster of one node in a folder of its own, as root and without systemd, runs a command on it, and ends
# it: cluster.sh COMMAND ...
set -euo pipefail

dir=$(mktemp -d)
chmod 755 "$dir" # munged refuses others
mkdir "$dir/state" "$dir/spool"
pids=()
end() {
  for pid in "${pids[@]}"; do
    kill "$pid" 2>/dev/null || true
  done
  wait
  rm -rf "$dir"
}
trap end EXIT

# free_port: one that nobody listens on.
free_port() {
  local port
  while port=$((20000 + RANDOM % 12000)); do
    (: </dev/tcp/127.0.0.1/$port) 2>/dev/null || { echo $port; return; }
  done
}

# await SECONDS COMMAND ...: until the command succeeds.
await() {
  local left=$(($1 * 10))
  shift
  until "$@" >/dev/null 2>&1; do
    left=$((left - 1))
    if [ $left -eq 0 ]; then
      echo "cluster.sh: no answer to: $*" >&2
      tail -n 20 "$dir"/*.log >&2
      return 1
    fi
    sleep 0.1
  done
}

(umask 077 && head -c 1024 /dev/urandom >"$dir/munge.key")
host=$(hostname -s)
cat >"$dir/slurm.conf" <<END
ClusterName=one
SlurmctldHost=$host(127.0.0.1)
SlurmUser=root
SlurmctldPort=$(free_port)
SlurmdPort=$(free_port)
AuthType=auth/munge
AuthInfo=socket=$dir/munge.socket
CredType=cred/munge
StateSaveLocation=$dir/state
SlurmdSpoolDir=$dir/spool
SlurmctldPidFile=$dir/slurmctld.pid
SlurmdPidFile=$dir/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
ReturnToService=2
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerParameters=defer_batch,sched_interval=1
MinJobAge=3600
NodeName=$host NodeAddr=127.0.0.1 CPUs=$(nproc) State=UNKNOWN
PartitionName=all Nodes=$host Default=YES State=UP
END
export SLURM_CONF=$dir/slurm.conf

munged --foreground --force --key-file="$dir/munge.key" --socket="$dir/munge.socket" --seed-file="$dir/munge.seed" \
  --pid-file="$dir/munge.pid" --log-file="$dir/munge.log" >"$dir/munged.log" 2>&1 &
pids+=($!)
await 20 munge --no-input --socket="$dir/munge.socket"
slurmctld -D -f "$SLURM_CONF" >"$dir/slurmctld.log" 2>&1 &
pids+=($!)
await 30 scontrol ping
slurmd -D -f "$SLURM_CONF" -N "$host" >"$dir/slurmd.log" 2>&1 &
pids+=($!)
await 30 sh -c "sinfo --noheader --states=idle --format=%n | grep -q ."
"$@"
