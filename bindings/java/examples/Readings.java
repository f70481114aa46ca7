import ot.ormak.Ormak;

/** Writes readings from a Java array into an HDF5 file and reads the warmest three back. */
public class Readings {
    public static void main(String[] args) {
        double[] readings = {12.5, 9.0, 14.0, 11.25, 13.5};
        double[] warmest = new double[3];
        int in = Ormak.register(readings);
        int out = Ormak.register(warmest);
        run("CREATE TRUNCATE FILE readings.h5; USE FILE readings.h5; "
                + "CREATE DATASET temperature AS DOUBLE(5) FROM MEMORY " + in + "; "
                + "SELECT FROM temperature ORDER DESCEND TOP 3 INTO MEMORY " + out);
        System.out.println("warmest: " + warmest[0] + " " + warmest[1] + " " + warmest[2]);

        // Without INTO, results replace the cursor in use.
        run("CREATE DATASET labels AS VARCHAR(2) VALUES(\"inlet\", \"outlet\"); SELECT FROM labels");
        StringBuilder labels = new StringBuilder("labels:");
        while (Ormak.cursorNext() == Ormak.SUCCESS) labels.append(' ').append(Ormak.cursorGetString());
        System.out.println(labels);
        run("CLOSE ALL FILE");
    }

    static void run(String script) {
        if (Ormak.execute(script) != Ormak.SUCCESS) {
            System.err.println(Ormak.getErrorMessage());
            System.exit(1);
        }
    }
}
