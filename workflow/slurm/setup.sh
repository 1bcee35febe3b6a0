#!/bin/sh
# A Slurm of one node on loopback, for trials and tests: Debian's packages slurm-wlm and munge, all
# configuration, state and logs in one folder, no accounting database, no systemd.
# Usage: workflow/slurm/setup.sh start FOLDER     installs what is missing, writes FOLDER, starts
#        workflow/slurm/setup.sh stop FOLDER      ends the three daemons
#        workflow/slurm/setup.sh status FOLDER    shows the node and the queue
# Then: export SLURM_CONF=FOLDER/slurm.conf, and sbatch, squeue and snakemake find it.
# Environment: KVA_SLURM_PORT (26817): the controller's port; the node's is the next one.
# FOLDER: with a short path, as sockets lie in it (107 bytes), and on a local disk.
set -eu

usage() {
    sed -n 's/^# \{0,1\}//; 4,6p' "$0" >&2
    exit 2
}

[ $# -eq 2 ] || usage
action=$1
mkdir -p "$2"
folder=$(cd "$2" && pwd)
port=${KVA_SLURM_PORT:-26817}
PATH=$PATH:/usr/sbin:/sbin
SLURM_CONF=$folder/slurm.conf
export SLURM_CONF

# --- What a start needs --------------------------------------------------------------------

install_missing() {
    command -v slurmctld >/dev/null && command -v slurmd >/dev/null &&
        command -v sbatch >/dev/null && command -v munged >/dev/null && return
    as_root=
    [ "$(id -u)" = 0 ] || as_root=sudo
    $as_root apt-get update -q
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -q -y --no-install-recommends \
        slurm-wlm slurm-client munge
}

write_configuration() {
    # Munge refuses folders that others may write to.
    chmod go-w "$folder"
    for part in munge state spool logs; do
        mkdir -p "$folder/$part"
        chmod 755 "$folder/$part"
    done
    if [ ! -f "$folder/munge/key" ]; then
        (umask 077 && dd if=/dev/urandom of="$folder/munge/key" bs=1024 count=1 2>/dev/null)
    fi
    # "CPUs=2 ... RealMemory=24152", without the node's name and the time since the start.
    machine=$(slurmd -C | sed -n 's/^NodeName=[^ ]* //p')
    cat >"$SLURM_CONF" <<END
ClusterName=kva
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
AuthInfo=socket=$folder/munge/socket
CryptoType=crypto/munge
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
SlurmctldLogFile=$folder/logs/slurmctld.log
SlurmdLogFile=$folder/logs/slurmd.log
# Processes are found by their parents: nothing is asked of control groups.
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/filetxt
JobCompLoc=$folder/logs/jobs.txt
MpiDefault=none
ReturnToService=2
KillWait=5
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
NodeName=$(hostname -s) NodeAddr=127.0.0.1 $machine
PartitionName=main Nodes=ALL Default=YES MaxTime=INFINITE State=UP
END
}

start_daemons() {
    # As root munged wants to be told that this is meant.
    munged --force --socket="$folder/munge/socket" --key-file="$folder/munge/key" \
        --pid-file="$folder/munge/pid" --log-file="$folder/munge/log" \
        --seed-file="$folder/munge/seed"
    slurmctld
    slurmd
}

# Waits until the node takes jobs.
wait_for_node() {
    for _ in $(seq 60); do
        case $(sinfo --noheader --format=%T 2>/dev/null) in
        idle | mixed | allocated) return ;;
        esac
        sleep 0.5
    done
    echo "setup.sh: the node does not come up; see $folder/logs" >&2
    tail -n 5 "$folder"/logs/*.log "$folder/munge/log" >&2
    exit 1
}

# --- Stopping ------------------------------------------------------------------------------

# Ends the process of a file that holds its number, and waits for its end.
end_process() {
    [ -f "$1" ] || return 0
    number=$(cat "$1")
    kill "$number" 2>/dev/null || return 0
    for _ in $(seq 40); do
        kill -0 "$number" 2>/dev/null || return 0
        sleep 0.25
    done
    echo "setup.sh: process $number of $1 does not end" >&2
}

stop_daemons() {
    scancel --user="$(id -un)" 2>/dev/null || true
    end_process "$folder/slurmd.pid"
    end_process "$folder/slurmctld.pid"
    end_process "$folder/munge/pid"
}

case $action in
start)
    install_missing
    write_configuration
    start_daemons
    wait_for_node
    echo "export SLURM_CONF=$SLURM_CONF"
    ;;
stop) stop_daemons ;;
status)
    sinfo
    squeue
    ;;
*) usage ;;
esac
