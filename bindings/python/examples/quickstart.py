import numpy
import ormak

ormak.execute("CREATE TRUNCATE FILE readings.h5")
ormak.execute("USE FILE readings.h5; "
              "CREATE DATASET temperature AS DOUBLE(6) VALUES(12.5, 14, 9.75, 13.5, 11, 10)")

# Results go to the cursor, which reads as a tuple of Python values.
ormak.execute("SELECT FROM temperature ORDER DESCEND TOP 3")
print("warmest:", *ormak.cursor())

# A NumPy array is read into and written from in place, with no copy.
values = numpy.zeros(6)
with ormak.variable(values) as n:
    ormak.execute(f"SELECT FROM temperature INTO MEMORY {n}")
    print("mean:", values.mean())
    values += 1
    ormak.execute(f"INSERT INTO temperature FROM MEMORY {n}")

# A failing statement raises ormak.Error with the library's status and message.
try:
    ormak.execute("SELECT FROM humidity")
except ormak.Error as error:
    print("status", error.status, "-", error.message)
ormak.execute("CLOSE FILE")
