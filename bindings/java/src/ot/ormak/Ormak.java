package ot.ormak;

import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;
import java.util.NoSuchElementException;

/**
 * Runs Ormak scripts from Java.
 *
 * <p>Results come back in the cursor in use, read with the {@code cursor*} methods, or in Java
 * arrays registered as memory variables: {@code INTO MEMORY n} and {@code FROM MEMORY n} name the
 * number that {@link #register} gave. The library never touches such an array: it works on a
 * buffer of its own and calls {@code variableOperation} back, which moves the values between the
 * array and that buffer. The element type of the array must match the object's: {@code byte[]}
 * for TINYINT, CHAR and OPAQUE (or raw bytes of any fixed type), {@code short[]} for SMALLINT,
 * {@code int[]} for INT, {@code long[]} for BIGINT, {@code float[]} for FLOAT, {@code double[]}
 * for DOUBLE and {@code String[]} for VARCHAR, unsigned types alike. Variable-length numeric
 * values do not travel through Java arrays.
 *
 * <p>The library keeps one session per process and is not reentrant: every method here holds the
 * class's lock, so threads take turns.
 */
public final class Ormak {
    public static final int SUCCESS = 0;
    public static final int ERROR_PARSE = -1;
    public static final int ERROR_NOT_FOUND = -2;
    public static final int ERROR_NO_ACCESS = -3;
    public static final int ERROR_NOT_OPEN = -4;
    public static final int ERROR_INVALID_FILE = -5;
    public static final int ERROR_NOT_SUPPORTED = -6;
    public static final int ERROR_NOT_ENOUGH_SPACE = -7;
    public static final int ERROR_NOT_ENOUGH_MEMORY = -8;
    public static final int ERROR_ALREADY_EXISTS = -9;
    public static final int ERROR_EMPTY = -10;
    public static final int ERROR_FULL = -11;
    public static final int ERROR_BEFORE_FIRST = -12;
    public static final int ERROR_AFTER_LAST = -13;
    public static final int ERROR_INVALID_VALUE = -14;
    public static final int ERROR_NO_ADDRESS = -15;
    public static final int ERROR_UNEXPECTED_TYPE = -16;
    public static final int ERROR_UNEXPECTED_DATA_TYPE = -17;
    public static final int ERROR_UNEXPECTED_STORAGE_TYPE = -18;
    public static final int ERROR_DANGLING_LINK = -19;
    public static final int ERROR_NOT_REGISTERED = -20;
    public static final int ERROR_INVALID_REGULAR_EXPRESSION = -21;
    public static final int ERROR_UNKNOWN = -99;

    public static final int UNDEFINED = -1;
    public static final int TINYINT = 1;
    public static final int UNSIGNED_TINYINT = 2;
    public static final int SMALLINT = 4;
    public static final int UNSIGNED_SMALLINT = 8;
    public static final int INT = 16;
    public static final int UNSIGNED_INT = 32;
    public static final int BIGINT = 64;
    public static final int UNSIGNED_BIGINT = 128;
    public static final int FLOAT = 256;
    public static final int DOUBLE = 512;
    public static final int CHAR = 1024;
    public static final int VARTINYINT = 2048;
    public static final int UNSIGNED_VARTINYINT = 4096;
    public static final int VARSMALLINT = 8192;
    public static final int UNSIGNED_VARSMALLINT = 16384;
    public static final int VARINT = 32768;
    public static final int UNSIGNED_VARINT = 65536;
    public static final int VARBIGINT = 131072;
    public static final int UNSIGNED_VARBIGINT = 262144;
    public static final int VARFLOAT = 524288;
    public static final int VARDOUBLE = 1048576;
    public static final int VARCHAR = 2097152;
    public static final int OPAQUE = 4194304;

    /** The calling language that the library knows Java by. */
    private static final int JAVA = 4;
    private static final int VARIABLE_COUNT = 8;

    /** The array registered under each number. */
    private static final Object[] variables = new Object[VARIABLE_COUNT];

    /** Calls of variableOperation so far, for the tests of this package. */
    static int operations;

    static {
        System.loadLibrary("ormak_java");
    }

    private Ormak() {
    }

    /**
     * Runs a script and returns its status: 0, or the status of the failure that stopped it.
     * Transient variables that received results are unregistered on return.
     */
    public static synchronized int execute(String script) {
        int word = executeScript(script.getBytes(StandardCharsets.UTF_8));
        // Bit 8 says that transient variables were released, bit 9 + n which ones.
        if ((word & 0x100) != 0) {
            for (int number = 0; number < VARIABLE_COUNT; number++) {
                if ((word & (1 << (9 + number))) != 0) forget(number);
            }
        }
        return (byte) word;
    }

    public static synchronized native int getStatus();

    public static synchronized native int getErrorLine();

    public static synchronized native int getErrorPosition();

    /** The message of the last failure, or null when the last script left none. */
    public static synchronized String getErrorMessage() {
        return text(errorMessage());
    }

    /** How many values the last SELECT or SHOW produced. */
    public static synchronized native long getLastDataCount();

    // Memory variables.

    /** Registers an array; returns its number, ERROR_FULL or ERROR_NO_ADDRESS for null. */
    public static int register(Object variable) {
        return register(variable, false);
    }

    /** Registers an array for the one script that writes into it. */
    public static int registerTransient(Object variable) {
        return register(variable, true);
    }

    /** Unregisters an array: 0, or ERROR_NOT_REGISTERED. */
    public static synchronized int unregister(Object variable) {
        int number = getNumber(variable);
        if (number < 0) return number;
        variableUnregister(number);
        forget(number);
        return SUCCESS;
    }

    /** Unregisters every array that this class registered. */
    public static synchronized void unregisterAll() {
        for (int number = 0; number < VARIABLE_COUNT; number++) {
            if (variables[number] != null) {
                variableUnregister(number);
                forget(number);
            }
        }
    }

    /** The number of a registered array, or ERROR_NOT_REGISTERED, or ERROR_NO_ADDRESS for null. */
    public static synchronized int getNumber(Object variable) {
        if (variable == null) return ERROR_NO_ADDRESS;
        for (int number = 0; number < VARIABLE_COUNT; number++) {
            if (variables[number] == variable) return number;
        }
        return ERROR_NOT_REGISTERED;
    }

    /** The data type of what the last statement wrote into the array, -1 before that. */
    public static synchronized int getDataType(Object variable) {
        int number = getNumber(variable);
        return number < 0 ? number : variableGetDataType(number);
    }

    /** How many values the array received, or its capacity when the statement gave a SIZE. */
    public static synchronized int getCount(Object variable) {
        int number = getNumber(variable);
        return number < 0 ? number : variableGetCount(number);
    }

    /** Bytes received, or -1 for strings. */
    public static synchronized int getSize(Object variable) {
        int number = getNumber(variable);
        return number < 0 ? number : variableGetSize(number);
    }

    private static synchronized int register(Object variable, boolean transient_) {
        if (variable == null) return ERROR_NO_ADDRESS;
        if (!(variable instanceof byte[] || variable instanceof short[] || variable instanceof int[]
                || variable instanceof long[] || variable instanceof float[] || variable instanceof double[]
                || variable instanceof String[])) {
            throw new IllegalArgumentException("not an array of a type that Ormak moves: " + variable.getClass());
        }
        // As in the library, an array registered again keeps its number and only changes its kind.
        int number = getNumber(variable);
        if (number < 0) {
            number = 0;
            while (number < VARIABLE_COUNT && variables[number] != null) number++;
            if (number == VARIABLE_COUNT) return ERROR_FULL;
        }
        variableRegister(number, transient_ ? 0 : -1);
        variables[number] = variable;
        return number;
    }

    private static void forget(int number) {
        variables[number] = null;
    }

    /**
     * Called back by the library, inside a statement on this thread, to move {@code size} units
     * between the array of {@code number} and the library's buffer: type 0 reads from the array
     * into the buffer, type 1 writes from the buffer into the array. Units are bytes, but strings
     * for a String[]; only whole elements move, and never more than the array holds. Returns the
     * units moved.
     */
    static int variableOperation(int type, int number, int size) {
        operations++;
        Object variable = number >= 0 && number < VARIABLE_COUNT ? variables[number] : null;
        if (variable == null || size <= 0) return 0;
        boolean read = type == 0;
        if (variable instanceof String[]) {
            String[] array = (String[]) variable;
            int count = Math.min(size, array.length);
            for (int i = 0; i < count; i++) {
                if (read) {
                    variableSetString(number, array[i] == null ? null : array[i].getBytes(StandardCharsets.UTF_8), i);
                } else {
                    array[i] = text(variableGetString(number, i));
                }
            }
            return count;
        }
        if (variable instanceof byte[]) {
            byte[] array = (byte[]) variable;
            int count = Math.min(size, array.length);
            for (int i = 0; i < count; i++) {
                if (read) variableSetChar(number, array[i], i);
                else array[i] = variableGetChar(number, i);
            }
            return count;
        }
        if (variable instanceof short[]) {
            short[] array = (short[]) variable;
            int count = Math.min(size / 2, array.length);
            for (int i = 0; i < count; i++) {
                if (read) variableSetShort(number, array[i], 2 * i);
                else array[i] = variableGetShort(number, 2 * i);
            }
            return 2 * count;
        }
        if (variable instanceof int[]) {
            int[] array = (int[]) variable;
            int count = Math.min(size / 4, array.length);
            for (int i = 0; i < count; i++) {
                if (read) variableSetInt(number, array[i], 4 * i);
                else array[i] = variableGetInt(number, 4 * i);
            }
            return 4 * count;
        }
        if (variable instanceof float[]) {
            float[] array = (float[]) variable;
            int count = Math.min(size / 4, array.length);
            for (int i = 0; i < count; i++) {
                if (read) variableSetFloat(number, array[i], 4 * i);
                else array[i] = variableGetFloat(number, 4 * i);
            }
            return 4 * count;
        }
        if (variable instanceof long[]) {
            long[] array = (long[]) variable;
            int count = Math.min(size / 8, array.length);
            for (int i = 0; i < count; i++) {
                if (read) variableSetLong(number, array[i], 8 * i);
                else array[i] = variableGetLong(number, 8 * i);
            }
            return 8 * count;
        }
        double[] array = (double[]) variable;
        int count = Math.min(size / 8, array.length);
        for (int i = 0; i < count; i++) {
            if (read) variableSetDouble(number, array[i], 8 * i);
            else array[i] = variableGetDouble(number, 8 * i);
        }
        return 8 * count;
    }

    // The cursor in use. A fresh result stands before its first element: cursorNext() reaches it.

    public static synchronized native int cursorGetCount();

    public static synchronized native int cursorGetDataType();

    public static synchronized native int cursorGetPosition();

    /** Bytes of the current value; ERROR_EMPTY, ERROR_BEFORE_FIRST or ERROR_AFTER_LAST. */
    public static synchronized native int cursorGetSize();

    public static synchronized native int cursorFirst();

    public static synchronized native int cursorLast();

    public static synchronized native int cursorNext();

    public static synchronized native int cursorPrevious();

    public static synchronized native int cursorAbsolute(int position);

    public static synchronized native int cursorRelative(int position);

    /**
     * The bytes of the current value in the machine's order (the first byte only of a CHAR or
     * OPAQUE value, the first member of a variable-length one); null where there is none.
     */
    public static synchronized native byte[] cursorGetBytes();

    /** The current string of a VARCHAR result; null for a null string or no current element. */
    public static synchronized String cursorGetString() {
        if (cursorGetDataType() != VARCHAR) throw new IllegalStateException("the cursor holds no strings");
        return text(cursorGetBytes());
    }

    public static synchronized int cursorGetInt() {
        return (int) cursorGetLong();
    }

    /** The current number, or the first member of a variable-length value, as a long. */
    public static synchronized long cursorGetLong() {
        int type = cursorGetDataType();
        ByteBuffer value = number();
        switch (type) {
        case TINYINT: case VARTINYINT: return value.get(0);
        case UNSIGNED_TINYINT: case UNSIGNED_VARTINYINT: return value.get(0) & 0xFF;
        case SMALLINT: case VARSMALLINT: return value.getShort(0);
        case UNSIGNED_SMALLINT: case UNSIGNED_VARSMALLINT: return value.getShort(0) & 0xFFFF;
        case INT: case VARINT: return value.getInt(0);
        case UNSIGNED_INT: case UNSIGNED_VARINT: return value.getInt(0) & 0xFFFFFFFFL;
        case BIGINT: case VARBIGINT: case UNSIGNED_BIGINT: case UNSIGNED_VARBIGINT: return value.getLong(0);
        case FLOAT: case VARFLOAT: return (long) value.getFloat(0);
        case DOUBLE: case VARDOUBLE: return (long) value.getDouble(0);
        default: throw new IllegalStateException("the cursor holds no numbers");
        }
    }

    public static synchronized double cursorGetDouble() {
        int type = cursorGetDataType();
        if (type == FLOAT || type == VARFLOAT) return number().getFloat(0);
        if (type == DOUBLE || type == VARDOUBLE) return number().getDouble(0);
        long value = cursorGetLong();
        if ((type == UNSIGNED_BIGINT || type == UNSIGNED_VARBIGINT) && value < 0) {
            return (double) (value >>> 1) * 2.0 + (value & 1);
        }
        return value;
    }

    private static ByteBuffer number() {
        byte[] bytes = cursorGetBytes();
        if (bytes == null) throw new NoSuchElementException("no value at cursor position " + cursorGetPosition());
        return ByteBuffer.wrap(bytes).order(ByteOrder.nativeOrder());
    }

    private static String text(byte[] bytes) {
        return bytes == null ? null : new String(bytes, StandardCharsets.UTF_8);
    }

    // The shim over the library's exported functions.

    private static native int executeScript(byte[] script);

    private static native byte[] errorMessage();

    private static native void variableRegister(int number, int transient_);

    private static native void variableUnregister(int number);

    private static native int variableGetDataType(int number);

    private static native int variableGetCount(int number);

    private static native int variableGetSize(int number);

    private static native void variableSetChar(int number, byte data, int position);

    private static native void variableSetShort(int number, short data, int position);

    private static native void variableSetInt(int number, int data, int position);

    private static native void variableSetLong(int number, long data, int position);

    private static native void variableSetFloat(int number, float data, int position);

    private static native void variableSetDouble(int number, double data, int position);

    private static native void variableSetString(int number, byte[] data, int position);

    private static native byte variableGetChar(int number, int position);

    private static native short variableGetShort(int number, int position);

    private static native int variableGetInt(int number, int position);

    private static native long variableGetLong(int number, int position);

    private static native float variableGetFloat(int number, int position);

    private static native double variableGetDouble(int number, int position);

    private static native byte[] variableGetString(int number, int position);
}
