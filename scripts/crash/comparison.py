"""Holds what the tills have kept against the service's orders and against what they told."""
import contextlib
import json
import re
import sqlite3

def expected_order(receipt):
    """The order that a committed receipt must have caused, as the simulator shows it."""
    header = receipt["header"]
    begun = re.sub(r"\D", "", header["dateTimeBeg"][11:19])
    lines = []
    for number, item in enumerate(receipt["positions"], 1):
        line = {"basePricePerItem": item["price"], "discountedPricePerLine": item["sumb"],
                "quantity": item["quantity"], "lineNumber": number, "lineId": item["posnum"],
                "product": {"ids": {"websiteLumaret": item["code"]}}, "status": "Paid"}
        promotions = [
            {"type": "discount", "amount": impact["discountSum"],
             "promotion": {"ids": {"externalId": "discountOnChange" if impact["discountMode"] == 6
                                   else impact["campaignCode"]}}}
            for impact in item["impacts"] if impact["impactSource"] == 0]
        lines.append({**line, "requestedPromotions": promotions} if promotions else line)
    return {"ids": {"externalOrderIdLm": f"{header['shopCode']:04}{header['cashCode']:02}"
                                         f"{header['shift']:04}{header['num']:07}{begun}"},
            "lines": lines, "totalPrice": round(sum(item["sumb"] for item in receipt["positions"]), 2),
            "mobilePhone": receipt["card"]["number"] if receipt["card"] else "",
            "conflicts": 0}


def check_store(run, till):
    """Reads all that a till has kept; returns its committed receipts by number."""
    receipts = {}
    broken = run.findings["broken files"]
    with contextlib.closing(sqlite3.connect(till.data / "till.db")) as store:
        state = store.execute("PRAGMA integrity_check").fetchone()[0]
        if state != "ok":
            broken.append(f"{till.data.name}/till.db: {state}")
        for row, number, state, report, head in store.execute(
                "SELECT id, number, state, report, head FROM receipts"):
            where = f"till {till.number}, receipt {number}"
            positions = store.execute(
                "SELECT position FROM positions WHERE receipt = ? ORDER BY number", [row])
            content = json.loads(head) | {"positions": [json.loads(text) for text, in positions]}
            if state == "committing":
                run.findings["lost"].append(f"{where}: left as being committed")
            if state != "committed" or number in till.forgiven:
                continue
            if number in receipts:
                run.findings["duplicated"].append(f"{where}: number again")
            receipts[number] = content
            expected = "reported" if content["header"]["kind"] == 1 else ""
            if report != expected:
                run.findings["wrong"].append(f"{where}: report {report!r}, expected {expected!r}")
        for message, error, number in store.execute(
                "SELECT message, lastError, number FROM messages "
                "LEFT JOIN receipts ON receipts.id = receipt"):
            if number not in till.forgiven:
                run.findings["lost"].append(
                    f"till {till.number}, not delivered: {message}: {error}")
    if (till.data / "damaged").exists():
        broken.append(f"{till.data.name}: a store was put aside")
    return receipts


def compare(run, till, receipts, orders):
    """Holds a till's receipts against its orders and against what its cashier was told."""
    finding = run.findings
    by_number = {}
    for order in orders:
        by_number.setdefault(int(order["ids"]["externalOrderIdLm"][10:17]), []).append(order)
    for number in till.forgiven:
        by_number.pop(number, None)
    for number, receipt in receipts.items():
        where = f"till {till.number}, receipt {number}"
        wanted = expected_order(receipt)
        found = by_number.pop(number, []) if receipt["header"]["kind"] == 1 else None
        if found is not None and len(found) != 1:
            finding["duplicated" if found else "lost"].append(f"{where}: {len(found)} orders")
        elif found:
            finding["wrong"] += [f"{where}: {member}: expected {value}, found {found[0][member]}"
                                 for member, value in wanted.items() if found[0][member] != value]
        kept = (len(receipt["positions"]), wanted["totalPrice"])
        told = till.announced.get(number, kept)
        if told != kept and told != (kept[0], None):
            finding["wrong"].append(f"{where}: told {told} positions and total, kept {kept}")
        if number in till.cancelled:
            finding["wrong"].append(f"{where}: cancelled, and committed all the same")
    finding["unexplained"] += [f"till {till.number}: {order['ids']}"
                               for rest in by_number.values() for order in rest]
    gone = (till.opened - till.cancelling | set(till.announced)) - {till.receipt, *receipts, *till.forgiven}
    finding["lost"] += [f"till {till.number}: receipt {number} is nowhere" for number in gone]
