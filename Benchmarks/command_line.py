"""What commands cost from the start of their process to its end, beside another task list for the command line."""

import json
import os
import shutil
import statistics
import subprocess

WORDS = {0: "L", 1: "M", 2: "H", 3: "H"}  # the peer has three priorities


class Peer:
    """taskwarrior with the same tasks, in a folder of its own."""

    def __init__(self, folder, tasks):
        self.folder = folder
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        (folder / "taskrc").write_text(f"data.location={folder}\nconfirmation=no\nverbose=nothing\nhooks=off\n")
        self.environment = {"TASKRC": str(folder / "taskrc"), "TASKDATA": str(folder)}
        imported = folder / "import.json"
        imported.write_text(json.dumps([self.record(task) for task in tasks]))
        subprocess.run(["task", "import", str(imported)], env=dict(os.environ, **self.environment), check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    @staticmethod
    def record(task):
        compact = lambda date: date.replace("-", "").replace(":", "")
        record = {"uuid": task["id"].lower(), "description": task["title"], "entry": compact(task["createdAt"]),
                  "priority": WORDS[task["priority"]], "tags": [f"t{tag['id'][:8]}" for tag in task["tags"]],
                  "status": "completed" if task["isCompleted"] else "pending"}
        if task["isCompleted"]:
            record["end"] = compact(task["completedAt"])
        if "dueDate" in task:
            record["due"] = compact(task["dueDate"])
        if "projectName" in task:
            record["project"] = task["projectName"]
        return record


def measure(table, program, home, work, finished, rounds):
    ours = {"XDG_DATA_HOME": str(home), "XDG_CONFIG_HOME": str(home / "config")}
    run = lambda *words: finished(program, *words, **ours)[0]
    today = statistics.median(run("list", "today") for _ in range(rounds)) * 1e3
    table.add("quillorn list today of 10,000", f"{today:.1f} ms", "", None, "≤ 20 ms", today <= 20)
    if not shutil.which("task"):
        table.add("quillorn list, add of 10,000", "not measured: there is no taskwarrior")
        return
    everything = subprocess.run([str(program), "list", "--completed", "--json"], env=dict(os.environ, **ours), check=True,
                                stdout=subprocess.PIPE).stdout
    peer = Peer(work / "taskwarrior", json.loads(everything))
    for what, words, others in (("list", ["list"], ["list"]),
                                ("add", ["add", "Call Bob tomorrow"], ["add", "Call Bob", "due:tomorrow"])):
        times, theirs = [], []
        for _ in range(rounds):
            times.append(run(*words))
            theirs.append(finished("task", *others, **peer.environment)[0])
        median, other = (statistics.median(side) * 1e3 for side in (times, theirs))
        table.add(f"quillorn {what} of 10,000", f"{median:.1f} ms", f"taskwarrior {other:.1f} ms", median / other,
                  "≤ 0.25", median / other <= 0.25)
