/* Ormak from a C program: readings go in from a C array, the three warmest come back through
   the cursor, and the whole column comes back into a second array. */
#include <stdio.h>

#include <Ormak.h>

static int run(const char *script) {
    if (ormak_execute(script) == ORMAK_SUCCESS) return 0;
    fprintf(stderr, "%s (status %d)\n", ormak_error_get_message(), ormak_execute_get_status());
    return 1;
}

int main(void) {
    double readings[6] = {12.5, 14.0, 9.75, 11.25, 13.5, 10.0};
    double copy[6] = {0};
    int in = ormak_variable_register(readings);
    int out = ormak_variable_register(copy);
    char script[512];

    snprintf(script, sizeof script,
             "CREATE TRUNCATE FILE readings.h5; USE FILE readings.h5;"
             "CREATE DATASET week AS DOUBLE(6) FROM MEMORY %d;"
             "SELECT FROM week INTO MEMORY %d", in, out);
    if (run(script)) return 1;
    if (run("SELECT FROM week ORDER DESCEND TOP 3")) return 1;

    printf("warmest:");
    while (ormak_cursor_next(NULL) == ORMAK_SUCCESS) printf(" %g", *ormak_cursor_get_double(NULL));
    printf("\nread back %d values, the last %g\n", ormak_variable_get_count(copy), copy[5]);

    ormak_variable_unregister_all();
    return run("CLOSE ALL FILE");
}
