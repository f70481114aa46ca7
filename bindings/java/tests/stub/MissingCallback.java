import java.nio.ByteBuffer;
import java.nio.ByteOrder;
import java.nio.charset.StandardCharsets;

import ot.ormak.Ormak;

/**
 * Runs memory statements with a class ot.ormak.Ormak that has no variableOperation. The
 * library must clear the NoSuchMethodError (left pending, it would be thrown out of
 * executeScript) and take the answer 0: the INSERT writes zeros and the SELECT moves nothing.
 */
public class MissingCallback {
    public static void main(String[] args) {
        Ormak.variableRegister(0, -1);
        String script = "CREATE TRUNCATE FILE missing.h5; USE FILE missing.h5; "
                + "CREATE DATASET d AS INT(3) VALUES(1, 2, 3); INSERT INTO d FROM MEMORY 0; "
                + "SELECT FROM d INTO MEMORY 0; SELECT FROM d; CLOSE ALL FILE";
        int word = Ormak.executeScript(script.getBytes(StandardCharsets.UTF_8));
        if (word != 0) throw new AssertionError("script answered " + word);
        if (Ormak.cursorGetCount() != 3) throw new AssertionError("expected 3 values, got " + Ormak.cursorGetCount());
        while (Ormak.cursorNext() == 0) {
            int value = ByteBuffer.wrap(Ormak.cursorGetBytes()).order(ByteOrder.nativeOrder()).getInt();
            if (value != 0) throw new AssertionError("a value the callback never delivered: " + value);
        }
        System.out.println("missing callback: cleared, nothing delivered");
    }
}
