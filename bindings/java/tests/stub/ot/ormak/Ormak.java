package ot.ormak;

/** Stands in for the binding's class: the same native methods, but no variableOperation. */
public final class Ormak {
    static {
        System.loadLibrary("ormak_java");
    }

    public static native int executeScript(byte[] script);

    public static native void variableRegister(int number, int transient_);

    public static native int cursorGetCount();

    public static native int cursorNext();

    public static native byte[] cursorGetBytes();
}
