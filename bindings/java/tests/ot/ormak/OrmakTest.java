package ot.ormak;

import java.util.Arrays;

/** The Java binding against the real library, in one JVM and so one session. */
public class OrmakTest {
    public static void main(String[] args) {
        run("CREATE TRUNCATE FILE java.h5; USE FILE java.h5");
        roundTrips();
        shortArrays();
        sameVariableTwice();
        noResultsNoCallback();
        registrations();
        errors();
        run("CLOSE ALL FILE");
        System.out.println("java binding: all checks passed");
    }

    /** Each array type goes into a dataset by FROM MEMORY and comes back by INTO MEMORY. */
    static void roundTrips() {
        roundTrip("INT(4)", new int[] {1, -2, Integer.MAX_VALUE, Integer.MIN_VALUE}, new int[4], Ormak.INT, 16);
        roundTrip("DOUBLE(3)", new double[] {1.5, -0.25, 1e300}, new double[3], Ormak.DOUBLE, 24);
        roundTrip("TINYINT(3)", new byte[] {-128, 0, 127}, new byte[3], Ormak.TINYINT, 3);
        roundTrip("SMALLINT(2)", new short[] {-300, 300}, new short[2], Ormak.SMALLINT, 4);
        roundTrip("BIGINT(2)", new long[] {Long.MIN_VALUE, 1L << 40}, new long[2], Ormak.BIGINT, 16);
        roundTrip("FLOAT(2)", new float[] {0.5f, -3.25f}, new float[2], Ormak.FLOAT, 8);
        roundTrip("VARCHAR(4)", new String[] {"alpha", null, "", "\u00fcber"}, new String[4], Ormak.VARCHAR, -1);

        // The values reached the file, not just the other array: the cursor reads them back.
        run("SELECT FROM ints");
        check(Ormak.cursorGetCount() == 4 && Ormak.cursorGetDataType() == Ormak.INT, "cursor of 4 ints");
        Ormak.cursorNext();
        Ormak.cursorNext();
        check(Ormak.cursorGetInt() == -2 && Ormak.cursorGetDouble() == -2.0, "second int in the cursor");
        run("SELECT FROM strings");
        Ormak.cursorLast();
        check("\u00fcber".equals(Ormak.cursorGetString()), "UTF-8 text in the cursor");
        Ormak.cursorPrevious();
        check("".equals(Ormak.cursorGetString()), "empty text in the cursor");
        Ormak.cursorPrevious();
        check(Ormak.cursorGetString() == null && Ormak.cursorGetBytes() == null, "null string in the cursor");
        check(Ormak.cursorAbsolute(9) == Ormak.ERROR_AFTER_LAST && Ormak.cursorGetString() == null, "after the last");
    }

    static int datasets;

    static void roundTrip(String type, Object in, Object out, int dataType, int size) {
        String name = dataType == Ormak.INT ? "ints" : dataType == Ormak.VARCHAR ? "strings" : "d" + datasets++;
        int from = Ormak.register(in);
        int into = Ormak.register(out);
        run("CREATE DATASET " + name + " AS " + type + "; INSERT INTO " + name + " FROM MEMORY " + from
                + "; SELECT FROM " + name + " INTO MEMORY " + into);
        check(Arrays.deepEquals(new Object[] {in}, new Object[] {out}), type + " round trip");
        check(Ormak.getDataType(out) == dataType, type + " data type " + Ormak.getDataType(out));
        check(Ormak.getCount(out) == java.lang.reflect.Array.getLength(out), type + " count " + Ormak.getCount(out));
        check(Ormak.getSize(out) == size, type + " size " + Ormak.getSize(out));
        // A source only read from tells nothing.
        check(Ormak.getDataType(in) == Ormak.UNDEFINED, type + " source untouched");
        Ormak.unregister(in);
        Ormak.unregister(out);
    }

    /** Arrays shorter than the values asked for take and give only what they hold. */
    static void shortArrays() {
        int[] one = {7};
        int number = Ormak.register(one);
        run("INSERT INTO ints FROM MEMORY " + number);
        int[] two = {-1, -1};
        int[] five = {-1, -1, -1, -1, -1};
        int small = Ormak.register(two);
        int large = Ormak.register(five);
        run("SELECT FROM ints INTO MEMORY " + small + "; SELECT FROM ints INTO MEMORY " + large);
        // What the array could not deliver reads as zero.
        check(Arrays.equals(two, new int[] {7, 0}), "two of four ints: " + Arrays.toString(two));
        check(Arrays.equals(five, new int[] {7, 0, 0, 0, -1}), "four ints into five: " + Arrays.toString(five));

        // With a SIZE of 5 bytes, one whole int moves.
        int[] values = {4, 5, 6, 8};
        Ormak.register(values);
        run("INSERT INTO ints FROM MEMORY " + Ormak.getNumber(values) + " SIZE 5; SELECT FROM ints INTO MEMORY "
                + large + " SIZE 8");
        check(Arrays.equals(five, new int[] {4, 0, 0, 0, -1}), "sized transfers: " + Arrays.toString(five));
        check(Ormak.getCount(five) == 2 && Ormak.getSize(five) == 8, "a sized target tells its capacity");
        // A SIZE beyond the target asks Java for no more than the target holds.
        int[] many = new int[25];
        Arrays.fill(many, 9);
        Ormak.register(many);
        run("INSERT INTO ints FROM MEMORY " + Ormak.getNumber(many) + " SIZE 100; SELECT FROM ints INTO MEMORY "
                + large);
        check(Arrays.equals(five, new int[] {9, 9, 9, 9, -1}), "oversized source: " + Arrays.toString(five));
        // Variable-length records have no accessors: with or without SIZE they stay absent.
        run("CREATE DATASET lists AS VARINT(2) VALUES((1, 2), 3); INSERT INTO lists FROM MEMORY "
                + Ormak.getNumber(many) + " SIZE 2; SELECT FROM lists");
        check(Ormak.cursorGetCount() == 2, "variable-length records from Java");

        String[] texts = {"x"};
        Ormak.register(texts);
        String[] back = {"old", "old", "old", "old", "old"};
        Ormak.register(back);
        run("INSERT INTO strings FROM MEMORY " + Ormak.getNumber(texts) + "; SELECT FROM strings INTO MEMORY "
                + Ormak.getNumber(back));
        check(Arrays.equals(back, new String[] {"x", null, null, null, "old"}), "strings: " + Arrays.toString(back));
        Ormak.unregisterAll();
    }

    /** Two statements of one script write the same array: two callbacks, the second wins. */
    static void sameVariableTwice() {
        int[] target = new int[4];
        int number = Ormak.register(target);
        run("CREATE DATASET pair AS INT(2) VALUES(30, 40); INSERT INTO ints VALUES(1, 2, 3, 4)");
        int before = Ormak.operations;
        run("SELECT FROM ints INTO MEMORY " + number + "; SELECT FROM pair INTO MEMORY " + number);
        check(Ormak.operations - before == 2, "two callbacks, not " + (Ormak.operations - before));
        check(Arrays.equals(target, new int[] {30, 40, 3, 4}), "second write over the first: " + Arrays.toString(target));
        check(Ormak.getCount(target) == 2, "the slot tells the last write");
        Ormak.unregister(target);
    }

    static void noResultsNoCallback() {
        int[] target = {9};
        int number = Ormak.register(target);
        int before = Ormak.operations;
        run("SELECT FROM ints TOP 0 INTO MEMORY " + number);
        check(Ormak.getLastDataCount() == 0, "no results");
        check(Ormak.operations == before && target[0] == 9, "no callback for no results");
        check(Ormak.getCount(target) == 0 && Ormak.getDataType(target) == Ormak.INT, "slot tells 0 values");
        Ormak.unregister(target);
    }

    static void registrations() {
        Object[] arrays = new Object[9];
        for (int i = 0; i < arrays.length; i++) arrays[i] = new int[1];
        for (int i = 0; i < 8; i++) check(Ormak.register(arrays[i]) == i, "lowest free number " + i);
        check(Ormak.register(arrays[8]) == Ormak.ERROR_FULL, "ninth array refused");
        check(Ormak.register(arrays[3]) == 3, "registered again keeps its number");
        check(Ormak.unregister(arrays[2]) == 0 && Ormak.unregister(arrays[2]) == Ormak.ERROR_NOT_REGISTERED,
                "unregistered once");
        check(Ormak.register(null) == Ormak.ERROR_NO_ADDRESS && Ormak.getCount(null) == Ormak.ERROR_NO_ADDRESS,
                "null refused");
        check(Ormak.getCount(new int[1]) == Ormak.ERROR_NOT_REGISTERED, "unknown array");
        Ormak.unregisterAll();

        // A transient array that receives results is released on both sides when the script ends.
        int[] once = new int[4];
        int[] feed = {5, 6, 7, 8};
        int number = Ormak.registerTransient(once);
        int source = Ormak.registerTransient(feed);
        run("INSERT INTO ints FROM MEMORY " + source + "; SELECT FROM ints INTO MEMORY " + number);
        check(Arrays.equals(once, feed), "transient array received " + Arrays.toString(once));
        check(Ormak.getNumber(once) == Ormak.ERROR_NOT_REGISTERED, "transient released");
        check(Ormak.execute("SELECT FROM ints INTO MEMORY " + number) == Ormak.ERROR_NOT_REGISTERED,
                "the library freed the slot too");
        // Only read from, it stays; registered plainly again, it is kept after a write.
        check(Ormak.getNumber(feed) == source, "a transient only read stays");
        check(Ormak.register(feed) == source, "made lasting");
        run("SELECT FROM ints INTO MEMORY " + source);
        check(Ormak.getNumber(feed) == source, "a lasting array stays");
        // The freed number is the first free one again.
        check(Ormak.register(once) == number, "freed number reused");
        Ormak.unregisterAll();
    }

    static void errors() {
        check(Ormak.execute("SHOW ORMAK VERSION\nSELEC FROM ints") == Ormak.ERROR_PARSE, "syntax error");
        check(Ormak.getStatus() == Ormak.ERROR_PARSE, "status -1");
        check(Ormak.getErrorLine() == 2 && Ormak.getErrorPosition() == 1,
                "line and position " + Ormak.getErrorLine() + ":" + Ormak.getErrorPosition());
        check("Unknown token \"SELEC\"".equals(Ormak.getErrorMessage()), "message " + Ormak.getErrorMessage());

        check(Ormak.execute("SHOW ORMAK VERSION; SELECT FROM nothing") == Ormak.ERROR_NOT_FOUND, "failing statement");
        check(Ormak.getStatus() == Ormak.ERROR_NOT_FOUND && Ormak.getErrorLine() == -1, "status -2, no line");
        String message = Ormak.getErrorMessage();
        check(message != null && message.startsWith("Error when") && message.contains("\"nothing\""),
                "message " + message);

        run("SHOW ORMAK VERSION");
        check(Ormak.getErrorMessage() == null && Ormak.getStatus() == 0, "a good script clears the message");
    }

    static void run(String script) {
        int status = Ormak.execute(script);
        check(status == 0, "status " + status + " of \"" + script + "\": " + Ormak.getErrorMessage());
    }

    static void check(boolean condition, String what) {
        if (!condition) throw new AssertionError(what);
    }
}
