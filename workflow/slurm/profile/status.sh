#!/bin/sh
# Tells Snakemake of a Slurm job: running, success or failed. Usage: status.sh ID

# Words of Slurm: those of a job that has ended otherwise than well are left to "failed".
say() {
    case $1 in
    COMPLETED*) echo success ;;
    PENDING* | CONFIGURING* | RUNNING* | SUSPENDED* | COMPLETING* | REQUEUE* | RESIZING* | STAGE_OUT*)
        echo running
        ;;
    *) echo failed ;;
    esac
}

told=$(scontrol show job --oneliner "$1" 2>&1)
case $told in
*JobState=*)
    state=${told#*JobState=}
    say "${state%% *}"
    ;;
*"Invalid job id"*)
    # The controller forgets jobs some minutes after their end (MinJobAge); accounting, where there is
    # some, does not.
    say "$(sacct --noheader --allocations --parsable2 --format=State --jobs="$1" 2>/dev/null | head -n 1)"
    ;;
*) echo running ;; # the controller does not answer: Snakemake asks again
esac
