"""Turns what the tasks registered into one row per folder, and rows into a table.

A row is a dictionary: folder, state, words. The states are those of STATES; what a program or
Ansible said is given word for word, its lines joined by a blank.
"""

from __future__ import annotations

import collections
import csv
import io

# State: whether the folder, or the host, needs a look.
STATES = {
    "installed": False,
    "already": False,  # held this version before
    "due": False,  # --check: the run would install
    "none": False,  # no Arduino folder on this host
    "refused": True,  # the installer found no Arduino that it supports, and wrote nothing
    "failed": True,  # the folder may be half written; the next run repeats it
    "damaged": True,  # the audit found a difference
    "unreachable": True,
}

# How the installer begins when it refuses a folder. All else that it says comes after it began to
# write.
REFUSALS = (
    "no Arduino directory",
    "Arduino directory name too long",
    "Unable to access directory: ",
    'Directory "',
)

BUSY = 75  # the status of flock in tasks/install_linux.yml


def _words(*texts):
    """The first text that says anything, in one line."""
    for text in texts:
        line = " ".join(str(text or "").split())
        if line:
            return line
    return ""


def _row(folder, state, words=""):
    return {"folder": folder, "state": state, "words": words}


def _after_run(folder, run, marker, version):
    """What became of a folder that the installer was run on."""
    status = run.get("rc")
    error = run.get("stderr") or ""
    if status == 0 and marker == version:
        return _row(folder, "installed")
    if status == 0:
        return _row(folder, "failed", f"ended well, but the folder's marker reads {marker!r}")
    if status == 1 and error.startswith(REFUSALS):
        return _row(folder, "refused", _words(error + (f" (its marker reads {marker})" if marker else "")))
    if status == BUSY and not error:
        return _row(folder, "failed", "another install is at work on this host")
    if status is None:
        return _row(folder, "failed", _words(run.get("msg"), "the installer did not end in time"))
    if 128 < status < 193:  # as flock and shells tell of it
        return _row(folder, "failed", f"the installer was killed by signal {status - 128}")
    if status == 1 and not error:
        return _row(folder, "failed", "status 1 and no word: its payload could not be made ready")
    return _row(folder, "failed", _words(error, run.get("msg"), f"status {status}"))


def quirloduino_rows(before, survey, after, runs, audits, due, version, check=False, trouble=""):
    """The rows of one host.

    before, after: pairs of folder and marker. survey: what the task behind `after` registered. runs,
    audits: results of the loops over folders. due: the folders to install into. trouble: why the
    tasks ended early, or nothing.
    """
    run_of = {run["item"]: run for run in runs if "item" in run}
    audit_of = {audit["item"]: audit for audit in audits if "item" in audit}
    marker_of = {folder: marker for folder, marker in after}
    lost = survey.get("msg") if survey.get("unreachable") else None
    rows = []
    for folder, _ in before:
        run = run_of.get(folder, {})
        audit = audit_of.get(folder, {})
        if folder not in due:
            row = _row(folder, "already")
        elif lost and "rc" not in run:
            row = _row(folder, "unreachable", _words(lost))
        elif trouble:
            row = _row(folder, "failed", _words(trouble))
        elif check:
            row = _row(folder, "due")
        else:
            row = _after_run(folder, run, marker_of.get(folder), version)
        if audit.get("rc", 0) != 0:
            row = _row(folder, "damaged", _words(audit.get("stdout"), audit.get("stderr")))
        rows.append(row)
    if not rows:
        state = "unreachable" if lost else "failed" if trouble else "none"
        rows.append(_row("", state, _words(lost, trouble)))
    return rows


def quirloduino_gather(hosts, hostvars):
    """The rows of all hosts, each with its host. A host that left none counts as unreachable."""
    rows = []
    for host in hosts:
        left = hostvars[host].get("quirloduino_results") if host in hostvars else None
        left = left or [_row("", "unreachable", "the host never came to its end")]
        rows += [dict(row, host=host) for row in left]
    return rows


def quirloduino_bad(rows):
    """Whether any row needs a look."""
    return any(STATES[row["state"]] for row in rows)


def quirloduino_table(rows):
    """Lines for people: the rows that need a look last, where they are seen, and a count of states."""
    rows = sorted(rows, key=lambda row: STATES[row["state"]])
    width = max((len(row["host"]) for row in rows), default=0)
    lines = []
    for row in rows:
        text = ": ".join(part for part in (row["folder"], row["words"]) if part)
        lines.append(f"{row['host']:<{width}}  {row['state']:<11}  {text}".rstrip())
    count = collections.Counter(row["state"] for row in rows)
    lines.append(", ".join(f"{count[state]} {state}" for state in STATES if state in count))
    return lines


def quirloduino_csv(rows):
    """The same as comma-separated values with a head line."""
    text = io.StringIO()
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(["host", "state", "folder", "words"])
    writer.writerows([row["host"], row["state"], row["folder"], row["words"]] for row in rows)
    return text.getvalue()


class FilterModule:
    """What Ansible looks for."""

    def filters(self):
        return {
            "quirloduino_rows": quirloduino_rows,
            "quirloduino_gather": quirloduino_gather,
            "quirloduino_bad": quirloduino_bad,
            "quirloduino_table": quirloduino_table,
            "quirloduino_csv": quirloduino_csv,
        }
