/* What the tests' trusted application understands. */
#ifndef VAULTPAD_TESTS_HOST_PLATFORM_SCRIPTED_ORDERS_H
#define VAULTPAD_TESTS_HOST_PLATFORM_SCRIPTED_ORDERS_H

/* The environment variable that says how it starts: nothing for normally, or one of these words. */
#define VAULTPAD_SCRIPTED_TA_START "VAULTPAD_SCRIPTED_TA_START"
#define VAULTPAD_SCRIPTED_TA_EXITS "exits"     /* at once, with the status 7 */
#define VAULTPAD_SCRIPTED_TA_REFUSES "refuses" /* the session */
#define VAULTPAD_SCRIPTED_TA_SILENT "silent"   /* answers nothing */
#define VAULTPAD_SCRIPTED_TA_STAYS "stays"     /* when its channel ends */

/* Events. Those that tell something write words into the last block that came with them. */
enum ScriptedOrder {
    SCRIPTED_ACCEPT = 1,
    SCRIPTED_REFUSE,
    SCRIPTED_TELL_BLOCKS,    /* count; of each: announced size, written, size of the file, first word */
    SCRIPTED_TELL_UUID,      /* the 16 bytes of the UUID that the session was opened with */
    SCRIPTED_TELL_PROCESS,   /* process id, lowest blocked signal or 0, is SIGPIPE ignored, open descriptors as bits */
    SCRIPTED_TELL_ARGUMENTS, /* not words: each argument with its NUL, then one NUL */
    SCRIPTED_DIE,            /* by SIGKILL */
    SCRIPTED_EXIT,
    SCRIPTED_HANG,
    SCRIPTED_ANSWER_LATE, /* after 300 ms */
    SCRIPTED_ANSWER_SHORT,
    SCRIPTED_ANSWER_LONG,
    SCRIPTED_ANSWER_WRONG_MAGIC,
    SCRIPTED_ANSWER_WRONG_KIND,
    SCRIPTED_ANSWER_WITH_DESCRIPTOR,
    SCRIPTED_TELL_SEALS /* of the last block */
};

#endif
