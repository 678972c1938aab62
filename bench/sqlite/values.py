#!/usr/bin/python3
"""What a value costs in SQL: nanoseconds per row that `vorn_field` adds to a query over a million rows.

    bench/sqlite/values.py build/release/integrations/sqlite/vornsqlite.so

The queries take turns, and the least of seven times counts for each. The bare query reads the
images and calls a function of SQLite's own.
"""

import sqlite3
import sys
import time

ROWS = 1_000_000
PAIR = "'LifTable', 'BCM88690_B0', 0"
QUERIES = {
    "sum( length( image ) )": "bare",
    f"sum( vorn_field( {PAIR}, image, 'vsi' ) )": "narrow",
    f"count( vorn_field( {PAIR}, image, 'mdbEntry' ) )": "wide, as text",
}


def main():
    connection = sqlite3.connect(":memory:")
    connection.enable_load_extension(True)
    connection.load_extension(sys.argv[1])
    connection.execute("CREATE TABLE dump( image BLOB )")
    connection.execute(f"""
        INSERT INTO dump WITH RECURSIVE n( i ) AS (
           SELECT 0 UNION ALL SELECT i + 1 FROM n LIMIT {ROWS} )
        SELECT vorn_encode( {PAIR}, 'vsi', i % 32768 ) FROM n""")
    best = {}
    for _ in range(7):
        for query, name in QUERIES.items():
            begin = time.process_time()
            connection.execute(f"SELECT {query} FROM dump").fetchall()
            seconds = time.process_time() - begin
            best[name] = min(seconds, best.get(name, seconds))
    for name, seconds in best.items():
        print(f"{name:14} {seconds / ROWS * 1e9:6.0f} ns a row, "
              f"{(seconds - best['bare']) / ROWS * 1e9:6.0f} of them the value")


main()
