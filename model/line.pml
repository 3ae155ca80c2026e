/* The polling thread's queues and flags, the port's care for stations, a caller, a
 * station that may be late, lose or spoil anything or die, and a second one that
 * always answers. One of three parts, so that each can be searched whole:
 *   QUEUES  all that the caller can do, where an exchange ends well or does not;
 *   READS   all of the port's care, where two addresses are polled in turn;
 *   WRITES  the same, where two values are written and one address is polled.
 * The last two prove what the first takes for given: an exchange ends well only
 * with its own answer. docs/model.md says what is left out; model/verify runs it.
 * What is marked "planted" breaks a rule. */

#define RETRIES 1
#define MAX_OWED 3 /* replies that a station may owe at a time */
#define SILENT_UNTIL_HELD_OFF 2 /* 3 for a station that has answered before */
#ifdef QUEUES
#define MAX_WAITING 2 /* writes in the queue */
#else
#define MAX_WAITING 1
#endif

/* A request; on the way back, what the reply answers, which no receiver can see. */
#define SPOILT 0
#define READ(address) (1 + (address)) /* address 0 is written to, 1 never is */
#define WRITE(value) (2 + (value))    /* values 1 and 2; the register begins with 0 */
#define FENCE(count) (4 + (count))
#define isWrite(q) ((q) == WRITE(1) || (q) == WRITE(2))
/* Double words in the answer: all of a reply that tells it from another. */
#define LENGTH(q) ((q) >= FENCE(1) -> (q) - FENCE(0) : (isWrite(q) -> 0 : 1))

/* Between caller and polling thread. */
bool error;                          /* CommError */
bool new_session;                    /* ThreadRequests */
bit session, polled;                 /* address: as set; as polled */
bool in_cache[2];                    /* DWordMap: addresses in the cache */
bool once_queued, fetched; bit once_address;
chan writes = [MAX_WAITING] of { byte }; /* WriteQueue: values for address 0 */

/* Between port and station 1. */
chan wire = [MAX_OWED] of { byte };  /* requests */
chan air = [MAX_OWED] of { byte };   /* replies that have come */
byte reg;                            /* address 0 */

/* OwedReplies, StationCare, CarefulExchange. */
byte owed[MAX_OWED], owes;           /* lengths, oldest first */
byte silence; bool held_off, probe_due;
byte request, sendings; bool failed; /* what went out last and was not answered */
byte reply;                          /* that collect() brought */
bool heard, admitted, ok, taken, repeats, fencing;
byte i, unowed;

/* What only the properties look at. */
bool read_since[2];                  /* addresses read since the take-over */
byte accepted;                       /* writes that nobody has begun to send */
bool asked;                          /* a request to station 1 is out */

/* The polling thread runs alone between two waits: what others do meanwhile they
 * could have done before or after. */
bool waiting;
inline waitAwhile() { waiting = true; !waiting }

/* ---- StationCare ---- */

inline revive() { silence = 0; held_off = false; probe_due = false }

inline waitedInVain() {
    silence = (silence < SILENT_UNTIL_HELD_OFF -> silence + 1 : silence);
    held_off = silence == SILENT_UNTIL_HELD_OFF;
    probe_due = false
}

/* ---- OwedReplies ---- */

/* Of several that the reply could answer the oldest. */
inline take(q) {
    taken = false;
    i = 0;
    do
    :: i >= owes -> break
    :: i < owes && !taken -> taken = owed[i] == LENGTH(q); i++
    :: i < owes && taken -> owed[i - 1] = owed[i]; i++
    od;
    i = 0;
    if
    :: taken -> owes--; owed[owes] = 0
    :: else
    fi
}

inline settle() { owed[0] = 0; owed[1] = 0; owed[2] = 0; owes = 0 }

/* The smallest count from 1 on that is not owed. */
inline freeCount() {
    unowed = 1;
    do
    :: (owes > 0 && owed[0] == unowed) || (owes > 1 && owed[1] == unowed) ||
       (owes > 2 && owed[2] == unowed) -> unowed++
    :: else -> break
    od
}

/* ---- CarefulExchange ---- */

/* Before an exchange: what has come is a late reply, or spoilt. */
inline begin() {
    atomic {
        do
        :: len(air) > 0 -> air ? reply;
           if
           :: reply != SPOILT ->
              take(reply);
              assert(taken); /* nothing comes that is not remembered as owed */
              revive()
           :: else
           fi
        :: else -> break
        od;
        reply = 0; taken = false
    }
}

inline send(q) {
    do
    :: atomic { owes < MAX_OWED ->
         owed[owes] = LENGTH(q); owes++;
         if
         :: wire ! q
         :: true /* lost; a dead station loses all */
         fi;
         asked = true; break }
    :: owes == MAX_OWED && len(air) > 0 -> begin()
    od
}

/* Up to the answer to q, to what is no answer, or to the end of the wait. */
inline collect(q) {
    do
    :: waitAwhile();
       if
       :: len(air) > 0 -> air ? reply; heard = true;
          if
          :: reply == SPOILT -> revive(); break
#ifdef LATE_ACCEPTED /* planted: whatever is whole is taken for the answer */
          :: reply != SPOILT -> break
#else
          :: reply != SPOILT && LENGTH(reply) == LENGTH(q) -> break
          :: reply != SPOILT && LENGTH(reply) != LENGTH(q) ->
             take(reply); assert(taken); revive(); taken = false; reply = 0
#endif
          fi
       :: true -> /* the wait is over */
          if
          :: !heard -> waitedInVain()
          :: else
          fi;
          reply = SPOILT; break
       fi
    od;
    heard = false; asked = false
}

/* What comes next repeats nothing. */
inline forget() { failed = false; request = 0; sendings = 0 }

inline passFence() {
    atomic { fencing = false; freeCount(); forget() };
    send(FENCE(unowed));
    collect(FENCE(unowed));
    atomic {
        admitted = reply != SPOILT;
        if
        :: admitted -> assert(reply == FENCE(unowed)); settle(); revive()
        :: else
        fi;
        reply = 0; unowed = 0
    }
}

inline judgeRepetition(q) {
    repeats = failed && sendings <= RETRIES && request == q && !held_off
}

inline mayGoOut(q) {
    atomic {
        judgeRepetition(q);
        if
        :: held_off && !probe_due -> skip
        :: !held_off && (owes == 0 || repeats) -> admitted = true
        :: !held_off && owes > 0 && !repeats -> skip /* a slow station gets no fence */
        :: (held_off && probe_due) || (!held_off && owes > 0 && !repeats) ->
           probe_due = false;
#ifdef NO_FENCE /* planted */
           admitted = true
#else
           fencing = true
#endif
        fi;
        repeats = false
    };
    if
    :: fencing -> passFence()
    :: else
    fi
}

/* One attempt of the driver at a request to station 1: sets ok, and error if not. */
#ifdef QUEUES
inline exchange(q) {
    waitAwhile();
    if
    :: reg = (isWrite(q) -> q - WRITE(0) : reg); /* applied, and perhaps answered */
       if
       :: ok = true
       :: error = true
       fi
    :: error = true
    fi
}
#else
inline exchange(q) {
    begin();
    mayGoOut(q);
    if
    :: admitted ->
       atomic {
           judgeRepetition(q);
           sendings = (repeats -> sendings + 1 : 1);
           request = q; failed = true; repeats = false; admitted = false
       };
       send(q);
       collect(q)
    :: else -> atomic { forget(); reply = SPOILT }
    fi;
    atomic {
        if
        :: reply != SPOILT ->
           /* A reply is never taken for the answer to another question. */
           assert(reply == q);
           take(reply); taken = false; reply = 0;
           forget(); revive(); ok = true
        :: else -> ok = false; error = true
        fi
    }
}

#endif

/* ---- The polling thread ---- */

inline clearError() {
#ifndef FLAG_KEPT /* planted: the error outlives the success */
    error = false;
#endif
    ok = false
}

inline sendAll() {
    do
    :: atomic { !error && len(writes) > 0 -> writes ? batch;
         accepted--;
#ifdef EMPTIED /* planted: the queue is emptied before the success */
         do
         :: len(writes) > 0 -> writes ? unowed
         :: else -> break
         od;
         unowed = 0;
#endif
         /* None that waits is lost without a word. */
         assert(accepted == len(writes)) };
       do
       :: attempt <= RETRIES ->
          waitAwhile();
          error = false;
          exchange(WRITE(batch));
          if
          :: atomic { ok -> skip;
               /* A write that is reported as confirmed has been applied. */
               assert(reg == batch); ok = false; break }
          :: atomic { !ok -> attempt++ }
          fi
       :: atomic { attempt > RETRIES ->
            /* One that is dropped is dropped with the error set. */
            assert(error); break }
       od;
       atomic { batch = 0; attempt = 0 }
    :: error || len(writes) == 0 -> break
    od
}

inline scan() {
    do
    :: tries <= RETRIES ->
       sendAll();
       waitAwhile();
       exchange(READ(polled));
       if
       :: atomic { ok -> skip;
#ifdef QUEUES
            in_cache[polled] = true; read_since[polled] = true
#endif
          };
          atomic { clearError(); break }
       :: atomic { !ok -> tries++ }
       fi
    :: tries > RETRIES -> break
    od;
    tries = 0;
    if
    :: new_session || once_queued -> skip /* other work waits */
    :: else -> waitAwhile(); begin(); /* station 2 answers, whatever comes late from station 1 */
       atomic { forget(); clearError() }
    fi
}

inline fetch() {
    do
    :: atomic { !once_queued -> break }
    :: atomic { once_queued && (in_cache[once_address] || tries > RETRIES) ->
         once_queued = false; fetched = true; break }
    :: once_queued && !in_cache[once_address] && tries <= RETRIES ->
       waitAwhile();
       exchange(READ(once_address));
       if
       :: atomic { ok -> clearError(); once_queued = false; fetched = true; break }
       :: atomic { !ok -> tries++ }
       fi
    od;
    tries = 0
}

inline takeOverSession() {
#ifdef QUEUES
    if
    :: new_session ->
#ifdef SESSION_LOST /* planted: one that is set meanwhile is forgotten */
       polled = session;
       waitAwhile();
       new_session = false;
#else
       new_session = false;
       waitAwhile();
       polled = session;
#endif
       atomic {
#ifndef CACHE_KEPT /* planted */
           in_cache[0] = false; in_cache[1] = false;
#endif
           read_since[0] = false; read_since[1] = false
       }
    :: else
    fi
#else
    polled = session
#endif
}

active proctype PollingThread() {
    byte batch, attempt, tries;
    atomic {
        do
        :: true ->
           takeOverSession();
           scan();
#ifdef QUEUES
           fetch()
#endif
        od
    }
}

/* ---- Those around it ---- */

/* Reads, writes and changes the session, one after the other, or rests. */
active proctype Caller() {
    bit address;
    do
    :: true -> skip
#ifdef QUEUES
    :: session = 1 - session; new_session = true
#endif
#ifdef READS
    :: session = 1 - session
#else
    :: atomic { !error && len(writes) < MAX_WAITING ->
         if
         :: writes ! 1
         :: writes ! 2
         fi;
         accepted++ }
#endif
#ifdef QUEUES
    :: atomic { !error ->
         if
         :: address = 0
         :: address = 1
         fi;
         if
         :: in_cache[address] ->
            /* A cached value has been read since the session was taken over. */
            assert(read_since[address]); address = 0
         :: else -> once_address = address; address = 0; once_queued = true;
            (fetched); fetched = false; once_address = 0
         fi }
#endif
    od
}

/* Answers in the order in which it was asked, as late as may be. */
active proctype Station() {
    byte q;
end:
    do
    :: atomic { len(wire) > 0 -> wire ? q;
         reg = (isWrite(q) -> q - WRITE(0) : reg);
         if
         :: air ! q
#ifndef WRITES /* for the size of the search */
         :: air ! SPOILT
#endif
         :: true /* lost */
         fi;
         q = 0 }
    od
}

/* Ends the polling thread's waits. */
active proctype Clock() {
end:
    do
    :: atomic { waiting -> waiting = false }
    od
}

/* Time: probes fall due, and what has not come within the timeout never comes. */
active proctype Time() {
end:
    do
#ifndef NEVER_PROBED /* planted */
    :: atomic { held_off && !probe_due -> probe_due = true }
#endif
    :: atomic { owes > 0 && len(wire) == 0 && len(air) == 0 -> settle() }
    od
}

/* A session that is set is taken over, unless somebody writes without end. */
ltl taken_over { [] <> (polled == session || accepted > 0) }
/* The error flag does not stay set on a line where somebody answers, unless somebody
 * changes the session or reads without end. */
ltl error_ends { [] <> (!error || new_session || once_queued) }
/* A station that comes back is asked again: it is asked for ever. */
ltl asked_again { [] <> asked }
