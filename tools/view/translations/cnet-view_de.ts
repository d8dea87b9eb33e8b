<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en">
<context>
    <name>ActionWords</name>
    <message>
        <source>%1: %2 from %3 to %4</source>
        <translation>%1: %2 von %3 bis %4</translation>
    </message>
    <message>
        <source>%1, a turn in %2 ms</source>
        <translation>%1, Periode %2 ms</translation>
    </message>
    <message>
        <source>%1, a step every %2 ms</source>
        <translation>%1, ein Schritt alle %2 ms</translation>
    </message>
</context>
<context>
    <name>Age</name>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 d</source>
        <translation>%1 d</translation>
    </message>
</context>
<context>
    <name>Connection</name>
    <message>
        <source>simulated press line</source>
        <translation>simulierte Pressenlinie</translation>
    </message>
</context>
<context>
    <name>FaultWords</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>The request is lost: a broken wire, a wrong station number, a PLC without power. It is sent again twice; then the values stay as they were and are marked &quot;no answer&quot;, and the station counts as away until it answers again.</source>
        <translation>Die Abfrage geht verloren: Drahtbruch, falsche Stationsnummer, SPS ohne Spannung. Sie wird zweimal wiederholt; dann bleiben die Werte, wie sie waren, mit dem Vermerk &quot;keine Antwort&quot;, und die Station gilt als abwesend, bis sie wieder antwortet.</translation>
    </message>
    <message>
        <source>Late answer</source>
        <translation>Späte Antwort</translation>
    </message>
    <message>
        <source>The PLC is busy, or a converter slow. Values come less often and the response times grow; an answer after the time-out is counted as late and never taken for the answer to a later request.</source>
        <translation>Die SPS ist ausgelastet oder ein Umsetzer langsam. Werte kommen seltener und die Antwortzeiten steigen; eine Antwort nach Ablauf der Wartezeit zählt als verspätet und gilt nie als Antwort auf eine spätere Abfrage.</translation>
    </message>
    <message>
        <source>Delay in milliseconds</source>
        <translation>Verzögerung in Millisekunden</translation>
    </message>
    <message>
        <source>Noise before the answer</source>
        <translation>Störung vor der Antwort</translation>
    </message>
    <message>
        <source>Interference, or a transmitter that is switched on too late. The stray bytes are skipped and the values stay good: only the frames show them.</source>
        <translation>Einstreuung, oder ein Sender, der zu spät einschaltet. Die fremden Bytes werden übergangen und die Werte bleiben gut: nur die Telegramme zeigen sie.</translation>
    </message>
    <message>
        <source>Stray bytes</source>
        <translation>Fremde Bytes</translation>
    </message>
    <message>
        <source>Noise after the answer</source>
        <translation>Störung nach der Antwort</translation>
    </message>
    <message>
        <source>A transmitter that is switched off badly. The answer is taken, and the next request waits until the line is quiet: only the frames show it.</source>
        <translation>Ein Sender, der unsauber abschaltet. Die Antwort wird genommen, und die nächste Abfrage wartet, bis die Leitung ruhig ist: nur die Telegramme zeigen es.</translation>
    </message>
    <message>
        <source>Answer in pieces</source>
        <translation>Antwort in Stücken</translation>
    </message>
    <message>
        <source>A network converter passes on each byte by itself. The pieces are put together and the values stay good; only the response times grow.</source>
        <translation>Ein Netzwerkumsetzer reicht jedes Byte einzeln weiter. Die Stücke werden zusammengesetzt und die Werte bleiben gut; nur die Antwortzeiten steigen.</translation>
    </message>
    <message>
        <source>Milliseconds between bytes</source>
        <translation>Millisekunden zwischen Bytes</translation>
    </message>
    <message>
        <source>Damaged answer</source>
        <translation>Beschädigte Antwort</translation>
    </message>
    <message>
        <source>A character was changed on the way, so the block check is wrong. The answer is thrown away and the request sent again: it counts among the wrong checks, and a damaged number is never shown.</source>
        <translation>Unterwegs wurde ein Zeichen verändert, die Blockprüfung ist falsch. Die Antwort wird verworfen und die Abfrage wiederholt: sie zählt als falsche Prüfung, und eine beschädigte Zahl wird nie gezeigt.</translation>
    </message>
    <message>
        <source>Answer of another station</source>
        <translation>Antwort einer anderen Station</translation>
    </message>
    <message>
        <source>Two stations were given each other&apos;s number, or one talks out of turn. What it says is not taken for the station that was asked; the request is sent again, and in the end the values are marked &quot;no answer&quot;.</source>
        <translation>Zwei Stationen haben ihre Nummern vertauscht, oder eine antwortet ungefragt. Was sie sagt, gilt nicht für die gefragte Station; die Abfrage wird wiederholt, und am Ende tragen die Werte den Vermerk &quot;keine Antwort&quot;.</translation>
    </message>
    <message>
        <source>Station that answers</source>
        <translation>Station, die antwortet</translation>
    </message>
    <message>
        <source>Refusal</source>
        <translation>Ablehnung</translation>
    </message>
    <message>
        <source>The PLC answers, but says no with an error code: an address that it does not have, or a request that it does not take. The values are marked &quot;refused&quot; with the reason, and the address is left out until the line is opened again or the PLC was away.</source>
        <translation>Die SPS antwortet, lehnt aber mit einem Fehlercode ab: eine Adresse, die sie nicht hat, oder eine Abfrage, die sie nicht annimmt. Die Werte tragen den Vermerk &quot;abgelehnt&quot; mit dem Grund, und die Adresse wird ausgelassen, bis die Leitung neu geöffnet wird oder die SPS weg war.</translation>
    </message>
    <message>
        <source>Error code, hexadecimal</source>
        <translation>Fehlercode, hexadezimal</translation>
    </message>
    <message>
        <source>Answer cut short</source>
        <translation>Abgeschnittene Antwort</translation>
    </message>
    <message>
        <source>A plug was pulled, or a buffer ran over, in the middle of an answer. What is left counts as a bad answer and the request is sent again; half an answer never becomes a value.</source>
        <translation>Mitten in der Antwort wurde ein Stecker gezogen oder lief ein Puffer über. Der Rest zählt als schlechte Antwort und die Abfrage wird wiederholt; aus einer halben Antwort wird nie ein Wert.</translation>
    </message>
    <message>
        <source>Bytes that are left</source>
        <translation>Bytes, die bleiben</translation>
    </message>
    <message>
        <source>Answer too long</source>
        <translation>Zu lange Antwort</translation>
    </message>
    <message>
        <source>More comes than was asked for. Such an answer counts as bad and the request is sent again; nothing of it becomes a value.</source>
        <translation>Es kommt mehr als verlangt. Eine solche Antwort zählt als schlecht und die Abfrage wird wiederholt; nichts davon wird zum Wert.</translation>
    </message>
    <message>
        <source>Bytes of the answer</source>
        <translation>Bytes der Antwort</translation>
    </message>
    <message>
        <source>Echo of the request</source>
        <translation>Echo der Abfrage</translation>
    </message>
    <message>
        <source>A two-wire converter hears itself: each request comes back before the answer. The echo is told apart from an answer and the values stay good: only the frames and the line load show it.</source>
        <translation>Ein Zweidrahtumsetzer hört sich selbst: jede Abfrage kommt vor der Antwort zurück. Das Echo wird von der Antwort unterschieden und die Werte bleiben gut: nur die Telegramme und die Leitungslast zeigen es.</translation>
    </message>
    <message>
        <source>Answer comes again</source>
        <translation>Antwort kommt mehrfach</translation>
    </message>
    <message>
        <source>A converter sends what it has sent already. The copies are not taken for the answer to the next request, even if that looks just the same; readings take a little longer.</source>
        <translation>Ein Umsetzer sendet, was er schon gesendet hat. Die Kopien gelten nicht als Antwort auf die nächste Abfrage, auch wenn diese gleich aussieht; das Lesen dauert etwas länger.</translation>
    </message>
    <message>
        <source>Copies</source>
        <translation>Kopien</translation>
    </message>
    <message>
        <source>%1 to %2, or a range as LOW..HIGH</source>
        <translation>%1 bis %2, oder ein Bereich als VON..BIS</translation>
    </message>
    <message>
        <source> (%1: %2)</source>
        <translation> (%1: %2)</translation>
    </message>
    <message>
        <source>, at each request</source>
        <translation>, bei jeder Abfrage</translation>
    </message>
    <message>
        <source>, at %1 % of the requests</source>
        <translation>, bei %1 % der Abfragen</translation>
    </message>
    <message numerus="yes">
        <source>, %n more times</source>
        <translation>
            <numerusform>, noch %n Mal</numerusform>
            <numerusform>, noch %n Mal</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Frames</name>
    <message>
        <source>no answer</source>
        <translation>keine Antwort</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>block check wrong</source>
        <translation>Blockprüfung falsch</translation>
    </message>
    <message>
        <source>not used</source>
        <translation>nicht verwendet</translation>
    </message>
    <message>
        <source>too late</source>
        <translation>zu spät</translation>
    </message>
    <message>
        <source>sent again</source>
        <translation>wiederholt</translation>
    </message>
    <message>
        <source>ended without a result</source>
        <translation>ohne Ergebnis beendet</translation>
    </message>
    <message>
        <source>stray bytes</source>
        <translation>fremde Bytes</translation>
    </message>
    <message>
        <source>-&gt; request</source>
        <translation>-&gt; Abfrage</translation>
    </message>
    <message>
        <source>&lt;- nothing</source>
        <translation>&lt;- nichts</translation>
    </message>
    <message>
        <source>&lt;- refusal</source>
        <translation>&lt;- Ablehnung</translation>
    </message>
    <message>
        <source>&lt;- answer</source>
        <translation>&lt;- Antwort</translation>
    </message>
    <message>
        <source>read</source>
        <translation>Lesen</translation>
    </message>
    <message>
        <source>write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <source>sign of life</source>
        <translation>Lebenszch.</translation>
    </message>
    <message>
        <source>other</source>
        <translation>andere</translation>
    </message>
    <message>
        <source>good</source>
        <translation>gut</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
    <message>
        <source>asked once more</source>
        <translation>noch einmal gefragt</translation>
    </message>
</context>
<context>
    <name>HistogramView</name>
    <message>
        <source>No answers yet.</source>
        <translation>Noch keine Antworten.</translation>
    </message>
    <message>
        <source>%1 answers: shortest %2 ms, median %3 ms, 95 % within %4 ms, longest %5 ms.</source>
        <translation>%1 Antworten: kürzeste %2 ms, Median %3 ms, 95 % unter %4 ms, längste %5 ms.</translation>
    </message>
</context>
<context>
    <name>LoadWords</name>
    <message>
        <source>%1 % busy: plenty of room</source>
        <translation>%1 % belegt: viel Platz</translation>
    </message>
    <message>
        <source>%1 % busy: room for more</source>
        <translation>%1 % belegt: Platz für mehr</translation>
    </message>
    <message>
        <source>%1 % busy: little room is left</source>
        <translation>%1 % belegt: wenig Platz</translation>
    </message>
    <message>
        <source>%1 % busy: full; watch less, or less often</source>
        <translation>%1 % belegt: voll; weniger oder seltener beobachten</translation>
    </message>
</context>
<context>
    <name>MotionWords</name>
    <message>
        <source>Up from the lowest to the highest value by 1 each time, then from the lowest again.</source>
        <translation>Vom kleinsten zum größten Wert, jedes Mal um 1 höher, dann wieder vom kleinsten.</translation>
    </message>
    <message>
        <source>To and fro between the two values, smoothly; the time is that of a full turn.</source>
        <translation>Gleichmäßig zwischen den beiden Werten hin und her; die Zeit ist die einer vollen Periode.</translation>
    </message>
    <message>
        <source>The lowest and the highest value in turn, each for the time.</source>
        <translation>Abwechselnd der kleinste und der größte Wert, jeder für die Zeit.</translation>
    </message>
    <message>
        <source>At random between the two values, a small step each time.</source>
        <translation>Zufällig zwischen den beiden Werten, jedes Mal ein kleiner Schritt.</translation>
    </message>
    <message>
        <source>A count of 32 bits in two words, the lower half first.</source>
        <translation>Ein Zähler mit 32 Bit in zwei Wörtern, die untere Hälfte zuerst.</translation>
    </message>
    <message>
        <source>Ramp</source>
        <translation>Rampe</translation>
    </message>
    <message>
        <source>Sine</source>
        <translation>Sinus</translation>
    </message>
    <message>
        <source>Square</source>
        <translation>Rechteck</translation>
    </message>
    <message>
        <source>Random walk</source>
        <translation>Zufall</translation>
    </message>
    <message>
        <source>Counter</source>
        <translation>Zähler</translation>
    </message>
</context>
<context>
    <name>ProjectFile</name>
    <message>
        <source>line %1, column %2</source>
        <translation>Zeile %1, Spalte %2</translation>
    </message>
    <message>
        <source>something is not closed; the file may have been cut off</source>
        <translation>etwas ist nicht geschlossen; die Datei ist vielleicht abgeschnitten</translation>
    </message>
    <message>
        <source>expected &apos;:&apos; behind a name</source>
        <translation>erwartet: &apos;:&apos; nach einem Namen</translation>
    </message>
    <message>
        <source>expected &apos;,&apos; or a closing bracket</source>
        <translation>erwartet: &apos;,&apos; oder eine schließende Klammer</translation>
    </message>
    <message>
        <source>expected a number</source>
        <translation>erwartet: eine Zahl</translation>
    </message>
    <message>
        <source>expected text in UTF-8</source>
        <translation>erwartet: Text in UTF-8</translation>
    </message>
    <message>
        <source>a backslash is followed by something unknown</source>
        <translation>nach einem Backslash steht etwas Unbekanntes</translation>
    </message>
    <message>
        <source>brackets are nested too deeply</source>
        <translation>Klammern sind zu tief geschachtelt</translation>
    </message>
    <message>
        <source>there is something behind the end</source>
        <translation>nach dem Ende steht noch etwas</translation>
    </message>
    <message>
        <source>expected a value</source>
        <translation>erwartet: ein Wert</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not what a project has there; expected { ... }</source>
        <translation>&quot;%1&quot; steht in einem Projekt dort nicht; erwartet: { ... }</translation>
    </message>
    <message>
        <source>this is no project of cnet-view; expected &quot;%1&quot;: &quot;%2&quot;</source>
        <translation>das ist kein Projekt von cnet-view; erwartet: &quot;%1&quot;: &quot;%2&quot;</translation>
    </message>
    <message>
        <source>it was made by a newer cnet-view: its version is %1, this one reads up to %2</source>
        <translation>es stammt von einem neueren cnet-view: Version %1, dieses liest bis %2</translation>
    </message>
    <message>
        <source>its version is missing; expected &quot;%1&quot;: %2</source>
        <translation>die Version fehlt; erwartet: &quot;%1&quot;: %2</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>die Datei ist leer</translation>
    </message>
    <message>
        <source>expected an object, { ... }</source>
        <translation>erwartet: ein Objekt, { ... }</translation>
    </message>
    <message>
        <source>it is longer than %1 bytes</source>
        <translation>länger als %1 Byte</translation>
    </message>
</context>
<context>
    <name>ProjectStore</name>
    <message>
        <source>Cannot read %1: %2</source>
        <translation>%1 lässt sich nicht lesen: %2</translation>
    </message>
    <message>
        <source>it is no file</source>
        <translation>es ist keine Datei</translation>
    </message>
    <message>
        <source>it is longer than %1 bytes</source>
        <translation>länger als %1 Byte</translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>%1 lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Cannot open %1: %2</source>
        <translation>%1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>Cannot write %1: the project is longer than %2 bytes</source>
        <translation>%1 lässt sich nicht schreiben: das Projekt ist länger als %2 Byte</translation>
    </message>
</context>
<context>
    <name>Quality</name>
    <message>
        <source>not read yet</source>
        <translation>noch nicht gelesen</translation>
    </message>
    <message>
        <source>good</source>
        <translation>gut</translation>
    </message>
    <message>
        <source>waiting for the PLC</source>
        <translation>wartet auf die SPS</translation>
    </message>
    <message>
        <source>implausible</source>
        <translation>unplausibel</translation>
    </message>
    <message>
        <source>stale</source>
        <translation>veraltet</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>abgelehnt</translation>
    </message>
    <message>
        <source>no answer</source>
        <translation>keine Antwort</translation>
    </message>
    <message>
        <source>line down</source>
        <translation>Leitung gestört</translation>
    </message>
</context>
<context>
    <name>RecipeRow</name>
    <message>
        <source>verified</source>
        <translation>geprüft</translation>
    </message>
    <message>
        <source>mismatch: it was written, and the PLC holds another value</source>
        <translation>Abweichung: geschrieben, aber die SPS hat einen anderen Wert</translation>
    </message>
    <message>
        <source>written, not read back</source>
        <translation>geschrieben, nicht zurückgelesen</translation>
    </message>
    <message>
        <source>not confirmed</source>
        <translation>nicht bestätigt</translation>
    </message>
    <message>
        <source>not written</source>
        <translation>nicht geschrieben</translation>
    </message>
    <message>
        <source>not read</source>
        <translation>nicht gelesen</translation>
    </message>
    <message>
        <source>same</source>
        <translation>gleich</translation>
    </message>
    <message>
        <source>differs</source>
        <translation>verschieden</translation>
    </message>
    <message>
        <source>no value</source>
        <translation>kein Wert</translation>
    </message>
    <message>
        <source>no value in the recipe; %1</source>
        <translation>kein Wert im Rezept; %1</translation>
    </message>
    <message>
        <source>not sent</source>
        <translation>nicht gesendet</translation>
    </message>
</context>
<context>
    <name>Recovery</name>
    <message>
        <source>this is no unsaved work of cnet-view</source>
        <translation>das ist keine ungespeicherte Arbeit von cnet-view</translation>
    </message>
</context>
<context>
    <name>ScanChoice</name>
    <message>
        <source>as the line is</source>
        <translation>wie die Leitung ist</translation>
    </message>
    <message>
        <source>as now: %1</source>
        <translation>wie jetzt: %1</translation>
    </message>
    <message>
        <source>all usual settings, until something answers</source>
        <translation>alle üblichen, bis etwas antwortet</translation>
    </message>
    <message>
        <source>%1 baud with any parity and stop bits</source>
        <translation>%1 Baud mit jeder Parität und jedem Stoppbit</translation>
    </message>
    <message>
        <source>not there: %1</source>
        <translation>nicht vorhanden: %1</translation>
    </message>
    <message>
        <source>not found out: %1</source>
        <translation>nicht ermittelt: %1</translation>
    </message>
</context>
<context>
    <name>Start</name>
    <message>
        <source>A window on PLCs of the MASTER-K family: values, trends, frames, stations.
Without arguments it shows a simulated press line.</source>
        <translation>Ein Fenster auf SPSen der Familie MASTER-K: Werte, Verläufe, Telegramme, Stationen.
Ohne Argumente zeigt es eine simulierte Pressenlinie.</translation>
    </message>
    <message>
        <source>Connect to tcp:HOST:PORT or serial:DEVICE[,BAUD,DATABITS,PARITY,STOPBITS].</source>
        <translation>Mit tcp:HOST:PORT oder serial:DEVICE[,BAUD,DATABITS,PARITY,STOPBITS] verbinden.</translation>
    </message>
    <message>
        <source>Station of what names none, 0 to 31 (default 1).</source>
        <translation>Station für alles, was keine nennt, 0 bis 31 (Vorgabe 1).</translation>
    </message>
    <message>
        <source>A project of this program, or a tag file (.csv).</source>
        <translation>Ein Projekt dieses Programms oder eine Variablendatei (.csv).</translation>
    </message>
    <message>
        <source>one file at a time, not &apos;%1&apos;</source>
        <translation>nur eine Datei auf einmal, nicht &apos;%1&apos;</translation>
    </message>
    <message>
        <source>--station &apos;%1&apos;: expected 0 to 31</source>
        <translation>--station &apos;%1&apos;: erwartet: 0 bis 31</translation>
    </message>
</context>
<context>
    <name>StationState</name>
    <message>
        <source>answers</source>
        <translation>antwortet</translation>
    </message>
    <message>
        <source>refuses</source>
        <translation>lehnt ab</translation>
    </message>
    <message>
        <source>answers are not usable</source>
        <translation>Antworten unbrauchbar</translation>
    </message>
    <message>
        <source>does not answer</source>
        <translation>antwortet nicht</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>TraceCsv</name>
    <message>
        <source>There are no samples in this time.</source>
        <translation>In dieser Zeit gibt es keine Messwerte.</translation>
    </message>
    <message>
        <source>These are more than a million rows.</source>
        <translation>Das sind mehr als eine Million Zeilen.</translation>
    </message>
</context>
<context>
    <name>TroubleLists</name>
    <message>
        <source>No answer</source>
        <translation>Keine Antwort</translation>
    </message>
    <message>
        <source>Answer with a wrong block check</source>
        <translation>Antwort mit falscher Blockprüfung</translation>
    </message>
    <message>
        <source>Answer that is not usable otherwise</source>
        <translation>Sonst unbrauchbare Antwort</translation>
    </message>
    <message>
        <source>Refused: %1</source>
        <translation>Abgelehnt: %1</translation>
    </message>
    <message>
        <source>Refused with other codes</source>
        <translation>Mit anderen Codes abgelehnt</translation>
    </message>
    <message>
        <source>Answer after the time-out</source>
        <translation>Antwort nach der Wartezeit</translation>
    </message>
    <message>
        <source>Request sent again</source>
        <translation>Abfrage wiederholt</translation>
    </message>
</context>
<context>
    <name>cnet::view::ActionTable</name>
    <message>
        <source>Motion</source>
        <translation>Bewegung</translation>
    </message>
    <message>
        <source>Fault</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>What is on</source>
        <translation>Was eingeschaltet ist</translation>
    </message>
</context>
<context>
    <name>cnet::view::ByteView</name>
    <message>
        <source>Bytes of the frame</source>
        <translation>Bytes des Telegramms</translation>
    </message>
</context>
<context>
    <name>cnet::view::CaptureBar</name>
    <message>
        <source>Li&amp;ne:</source>
        <translation>Leit&amp;ung:</translation>
    </message>
    <message>
        <source>File that is shown</source>
        <translation>Gezeigte Datei</translation>
    </message>
    <message>
        <source>Line of the file</source>
        <translation>Leitung aus der Datei</translation>
    </message>
    <message>
        <source>File %1: %2</source>
        <translation>Datei %1: %2</translation>
    </message>
    <message numerus="yes">
        <source>%n exchanges</source>
        <translation>
            <numerusform>%n Abfrage</numerusform>
            <numerusform>%n Abfragen</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::Collector</name>
    <message>
        <source>There is no tag %1.</source>
        <translation>Es gibt keine Variable %1.</translation>
    </message>
    <message>
        <source>%1 is text, which cannot be drawn.</source>
        <translation>%1 ist Text, der sich nicht zeichnen lässt.</translation>
    </message>
</context>
<context>
    <name>cnet::view::ConnectPage</name>
    <message>
        <source>What the test found</source>
        <translation>Ergebnis des Tests</translation>
    </message>
    <message>
        <source>State of the connection</source>
        <translation>Zustand der Verbindung</translation>
    </message>
    <message>
        <source>Check the cable, the station number and the speed that the PLC is set to.</source>
        <translation>Prüfen Sie Kabel, Stationsnummer und die Baudrate, auf die die SPS eingestellt ist.</translation>
    </message>
    <message>
        <source>T&amp;est</source>
        <translation>T&amp;esten</translation>
    </message>
    <message>
        <source>&amp;Connect</source>
        <translation>&amp;Verbinden</translation>
    </message>
    <message>
        <source>Not connected. %1</source>
        <translation>Nicht verbunden. %1</translation>
    </message>
    <message>
        <source>Co&amp;nnect</source>
        <translation>Verbi&amp;nden</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Asks which stations answer; nothing is written</source>
        <translation>Fragt, welche Stationen antworten; es wird nichts geschrieben</translation>
    </message>
    <message>
        <source>Double click or Enter connects</source>
        <translation>Doppelklick oder Eingabetaste verbindet</translation>
    </message>
    <message>
        <source>This port is in use by the window itself. Disconnect first.</source>
        <translation>Diese Schnittstelle benutzt das Programm selbst. Erst trennen.</translation>
    </message>
    <message>
        <source>Stop t&amp;est</source>
        <translation>T&amp;est abbrechen</translation>
    </message>
    <message>
        <source>State: %1</source>
        <translation>Zustand: %1</translation>
    </message>
    <message>
        <source>State: %1 (%2)</source>
        <translation>Zustand: %1 (%2)</translation>
    </message>
    <message>
        <source>What to do now</source>
        <translation>Was jetzt zu tun ist</translation>
    </message>
    <message>
        <source>What the PLC holds is on the Values page (Ctrl+2): type an address there, like D_W:100, to add it.</source>
        <translation>Was in der SPS steht, zeigt die Seite Werte (Strg+2): dort eine Adresse wie D_W:100 eingeben, um sie hinzuzufügen.</translation>
    </message>
    <message>
        <source>Choose above how the PLC is reached, and press Connect. Test only asks which stations answer.</source>
        <translation>Wählen Sie oben, wie die SPS erreicht wird, und drücken Sie Verbinden. Testen fragt nur, welche Stationen antworten.</translation>
    </message>
    <message>
        <source>&amp;Latest connections:</source>
        <translation>Let&amp;zte Verbindungen:</translation>
    </message>
    <message>
        <source>Latest connections</source>
        <translation>Letzte Verbindungen</translation>
    </message>
    <message>
        <source>%1, station %2</source>
        <translation>%1, Station %2</translation>
    </message>
</context>
<context>
    <name>cnet::view::CursorTable</name>
    <message>
        <source>Trace</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>At A</source>
        <translation>Bei A</translation>
    </message>
    <message>
        <source>At B</source>
        <translation>Bei B</translation>
    </message>
    <message>
        <source>B - A</source>
        <translation>B - A</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittel</translation>
    </message>
</context>
<context>
    <name>cnet::view::FaultForm</name>
    <message>
        <source>Faults: tick one and see what becomes of the values</source>
        <translation>Fehler: einen ankreuzen und sehen, was aus den Werten wird</translation>
    </message>
    <message>
        <source>Kinds of faults</source>
        <translation>Fehlerarten</translation>
    </message>
    <message>
        <source>What the fault teaches</source>
        <translation>Was der Fehler zeigt</translation>
    </message>
    <message>
        <source>What became of the fault</source>
        <translation>Was aus dem Fehler wurde</translation>
    </message>
    <message>
        <source> % of the requests</source>
        <translation> % der Abfragen</translation>
    </message>
    <message>
        <source>Share of the requests with the fault</source>
        <translation>Anteil der Abfragen mit dem Fehler</translation>
    </message>
    <message>
        <source>until it is unticked</source>
        <translation>bis zum Abschalten</translation>
    </message>
    <message>
        <source> times</source>
        <translation> Mal</translation>
    </message>
    <message>
        <source>How many times the fault happens</source>
        <translation>Wie oft der Fehler vorkommt</translation>
    </message>
    <message>
        <source>How &amp;often:</source>
        <translation>Ko&amp;mmt vor:</translation>
    </message>
    <message>
        <source>%1:</source>
        <translation>%1:</translation>
    </message>
    <message>
        <source>%1: off.</source>
        <translation>%1: aus.</translation>
    </message>
    <message>
        <source>%1: on.</source>
        <translation>%1: ein.</translation>
    </message>
    <message>
        <source>Ha&amp;ppens at:</source>
        <translation>&amp;Quote:</translation>
    </message>
</context>
<context>
    <name>cnet::view::FilterBar</name>
    <message>
        <source>Faults &amp;only</source>
        <translation>Nur Fehl&amp;er</translation>
    </message>
    <message>
        <source>S&amp;tation:</source>
        <translation>Sta&amp;tion:</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>T&amp;yp:</translation>
    </message>
    <message>
        <source>F&amp;ind:</source>
        <translation>Su&amp;chen:</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Kind of request</source>
        <translation>Typ der Abfrage</translation>
    </message>
    <message>
        <source>Text to find in frames</source>
        <translation>Text, der in Telegrammen gesucht wird</translation>
    </message>
    <message>
        <source>words, an address, or bytes like 72 53 42</source>
        <translation>Wörter, Adresse oder Bytes wie 72 53 42</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
</context>
<context>
    <name>cnet::view::FrameDetail</name>
    <message>
        <source>The frame in words</source>
        <translation>Das Telegramm in Worten</translation>
    </message>
    <message>
        <source>Fields of the frame</source>
        <translation>Felder des Telegramms</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Bedeutung</translation>
    </message>
    <message>
        <source>Byte</source>
        <translation>Byte</translation>
    </message>
    <message>
        <source>Hexadecimal</source>
        <translation>Hexadezimal</translation>
    </message>
    <message>
        <source>Characters</source>
        <translation>Zeichen</translation>
    </message>
    <message>
        <source>Select a frame to see what its bytes mean.</source>
        <translation>Wählen Sie ein Telegramm, um zu sehen, was seine Bytes bedeuten.</translation>
    </message>
</context>
<context>
    <name>cnet::view::FrameModel</name>
    <message>
        <source>packet %1 of the file</source>
        <translation>Paket %1 der Datei</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Frame</source>
        <translation>Telegramm</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>What it says</source>
        <translation>Inhalt</translation>
    </message>
    <message>
        <source>Bytes</source>
        <translation>Bytes</translation>
    </message>
    <message>
        <source>Response</source>
        <translation>Antwortzeit</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
</context>
<context>
    <name>cnet::view::FrameTable</name>
    <message>
        <source>Frames of the line</source>
        <translation>Telegramme der Leitung</translation>
    </message>
</context>
<context>
    <name>cnet::view::FramesPage</name>
    <message>
        <source>&amp;Frames</source>
        <translation>Te&amp;legramme</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Hold the table; frames go on being recorded</source>
        <translation>Tabelle anhalten; Telegramme werden weiter aufgezeichnet</translation>
    </message>
    <message>
        <source>Ctrl+P</source>
        <translation>Ctrl+P</translation>
    </message>
    <message>
        <source>Follow</source>
        <translation>Folgen</translation>
    </message>
    <message>
        <source>Stay at the last frame</source>
        <translation>Beim letzten Telegramm bleiben</translation>
    </message>
    <message>
        <source>Ctrl+End</source>
        <translation>Ctrl+End</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Empty the table</source>
        <translation>Tabelle leeren</translation>
    </message>
    <message>
        <source>Ctrl+L</source>
        <translation>Ctrl+L</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected rows as text</source>
        <translation>Gewählte Zeilen als Text kopieren</translation>
    </message>
    <message>
        <source>Request/answer</source>
        <translation>Abfrage/Antwort</translation>
    </message>
    <message>
        <source>Go from a request to its answer, or back</source>
        <translation>Von der Abfrage zur Antwort springen oder zurück</translation>
    </message>
    <message>
        <source>Ctrl+J</source>
        <translation>Ctrl+J</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>Go to the text to find</source>
        <translation>Zum Suchtext gehen</translation>
    </message>
    <message>
        <source>Save capture...</source>
        <translation>Speichern...</translation>
    </message>
    <message>
        <source>Save the frames as a pcapng file</source>
        <translation>Telegramme als pcapng-Datei speichern</translation>
    </message>
    <message>
        <source>Ctrl+E</source>
        <translation>Ctrl+E</translation>
    </message>
    <message>
        <source>Open capture...</source>
        <translation>Öffnen...</translation>
    </message>
    <message>
        <source>Show a pcapng file</source>
        <translation>Eine pcapng-Datei zeigen</translation>
    </message>
    <message>
        <source>Ctrl+Shift+E</source>
        <translation>Ctrl+Shift+E</translation>
    </message>
    <message>
        <source>Live</source>
        <translation>Live</translation>
    </message>
    <message>
        <source>Back to the frames of the line</source>
        <translation>Zurück zu den Telegrammen der Leitung</translation>
    </message>
    <message>
        <source>Ctrl+Shift+L</source>
        <translation>Ctrl+Shift+L</translation>
    </message>
    <message>
        <source>Count of frames</source>
        <translation>Anzahl der Telegramme</translation>
    </message>
    <message>
        <source>Select a frame first.</source>
        <translation>Wählen Sie zuerst ein Telegramm.</translation>
    </message>
    <message>
        <source>Its answer is not here.</source>
        <translation>Die Antwort dazu ist nicht hier.</translation>
    </message>
    <message>
        <source>Its request is not here any more.</source>
        <translation>Die Abfrage dazu ist nicht mehr hier.</translation>
    </message>
    <message numerus="yes">
        <source>%n exchanges</source>
        <translation>
            <numerusform>%n Abfrage</numerusform>
            <numerusform>%n Abfragen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n faults</source>
        <translation>
            <numerusform>%n Fehler</numerusform>
            <numerusform>%n Fehler</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 of %2 rows shown</source>
        <translation>%1 von %2 Zeilen gezeigt</translation>
    </message>
    <message numerus="yes">
        <source>paused: %n more wait</source>
        <translation>
            <numerusform>Pause: %n weiteres wartet</numerusform>
            <numerusform>Pause: %n weitere warten</numerusform>
        </translation>
    </message>
    <message>
        <source>There is no frame to save.</source>
        <translation>Es gibt kein Telegramm zu speichern.</translation>
    </message>
    <message>
        <source>Connect to a line first.</source>
        <translation>Verbinden Sie zuerst eine Leitung.</translation>
    </message>
    <message>
        <source>The frames were not saved: %1: %2</source>
        <translation>Die Telegramme wurden nicht gespeichert: %1: %2</translation>
    </message>
    <message>
        <source>Save them in another place. They are still here.</source>
        <translation>Speichern Sie sie an anderer Stelle. Sie sind noch da.</translation>
    </message>
    <message numerus="yes">
        <source>%n frames were saved in %1.</source>
        <translation>
            <numerusform>%n Telegramm wurde in %1 gespeichert.</numerusform>
            <numerusform>%n Telegramme wurden in %1 gespeichert.</numerusform>
        </translation>
    </message>
    <message>
        <source>The capture cannot be opened: %1</source>
        <translation>Die Aufzeichnung lässt sich nicht öffnen: %1</translation>
    </message>
    <message>
        <source>What is shown stays. Choose a pcapng file with frames of such a line.</source>
        <translation>Die Anzeige bleibt. Wählen Sie eine pcapng-Datei mit Telegrammen einer solchen Leitung.</translation>
    </message>
    <message>
        <source>%1: of %2 only the first %3 exchanges are shown</source>
        <translation>%1: von %2 werden nur die ersten %3 Abfragen gezeigt</translation>
    </message>
    <message>
        <source>The rest of the file is shown.</source>
        <translation>Der Rest der Datei wird gezeigt.</translation>
    </message>
    <message>
        <source>Save the frames</source>
        <translation>Telegramme speichern</translation>
    </message>
    <message>
        <source>Captures (*.pcapng)</source>
        <translation>Aufzeichnungen (*.pcapng)</translation>
    </message>
    <message>
        <source>Show a capture</source>
        <translation>Aufzeichnung zeigen</translation>
    </message>
    <message>
        <source>Captures (*.pcapng);;All files (*)</source>
        <translation>Aufzeichnungen (*.pcapng);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Those that wait since the pause are not among them.</source>
        <translation>Die seit der Pause wartenden sind nicht dabei.</translation>
    </message>
    <message>
        <source>it is no file</source>
        <translation>es ist keine Datei</translation>
    </message>
    <message>
        <source>End the pause first: frames wait since it began.</source>
        <translation>Beenden Sie erst die Pause: seit ihrem Beginn warten Telegramme.</translation>
    </message>
</context>
<context>
    <name>cnet::view::GroupTree</name>
    <message>
        <source>Groups of tags</source>
        <translation>Gruppen von Variablen</translation>
    </message>
    <message>
        <source>All tags</source>
        <translation>Alle Variablen</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>cnet::view::HistogramView</name>
    <message>
        <source>Response times</source>
        <translation>Antwortzeiten</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 ms</translation>
    </message>
</context>
<context>
    <name>cnet::view::Line</name>
    <message>
        <source>not connected</source>
        <translation>nicht verbunden</translation>
    </message>
    <message>
        <source>connected</source>
        <translation>verbunden</translation>
    </message>
    <message>
        <source>connecting</source>
        <translation>verbindet</translation>
    </message>
    <message>
        <source>cannot connect: %1</source>
        <translation>keine Verbindung: %1</translation>
    </message>
    <message>
        <source>lost: %1</source>
        <translation>verloren: %1</translation>
    </message>
    <message>
        <source>being scanned</source>
        <translation>wird abgesucht</translation>
    </message>
</context>
<context>
    <name>cnet::view::LineLoad</name>
    <message>
        <source>Line load</source>
        <translation>Leitungslast</translation>
    </message>
    <message>
        <source>Line load of the last minutes</source>
        <translation>Leitungslast der letzten Minuten</translation>
    </message>
    <message>
        <source>Line load in words</source>
        <translation>Leitungslast in Worten</translation>
    </message>
    <message>
        <source>Line load:</source>
        <translation>Leitungslast:</translation>
    </message>
    <message>
        <source>%1 bytes a second</source>
        <translation>%1 Byte pro Sekunde</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1; how fast the line behind the port is, is not known</source>
        <translation>%1; die Geschwindigkeit der Leitung hinter dem Port ist unbekannt</translation>
    </message>
    <message>
        <source>the line is not open</source>
        <translation>die Leitung ist nicht offen</translation>
    </message>
    <message numerus="yes">
        <source>Nothing in the last %n minutes.</source>
        <translation>
            <numerusform>Nichts in der letzten Minute (%n).</numerusform>
            <numerusform>Nichts in den letzten %n Minuten.</numerusform>
        </translation>
    </message>
    <message>
        <source>Between %1 and %2</source>
        <translation>Zwischen %1 und %2</translation>
    </message>
    <message numerus="yes">
        <source>%1 % in the last %n minutes.</source>
        <translation>
            <numerusform>%1 % in der letzten Minute (%n).</numerusform>
            <numerusform>%1 % in den letzten %n Minuten.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 bytes a second in the last %n minutes.</source>
        <translation>
            <numerusform>%1 Byte pro Sekunde in der letzten Minute (%n).</numerusform>
            <numerusform>%1 Byte pro Sekunde in den letzten %n Minuten.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>cnet::view::LineRecorder</name>
    <message>
        <source>the line never became clear for it</source>
        <translation>die Leitung wurde dafür nie frei</translation>
    </message>
    <message>
        <source>the same as the answer before it, byte for byte: it may be a copy</source>
        <translation>Byte für Byte wie die Antwort davor: Es kann eine Kopie sein</translation>
    </message>
</context>
<context>
    <name>cnet::view::LineTest</name>
    <message>
        <source>%1 (asked %2 of %3)</source>
        <translation>%1 (%2 von %3 gefragt)</translation>
    </message>
    <message>
        <source>Asking...</source>
        <translation>Frage ab...</translation>
    </message>
    <message>
        <source>No station has answered.</source>
        <translation>Keine Station hat geantwortet.</translation>
    </message>
    <message>
        <source>station %1 (%2 ms)</source>
        <translation>Station %1 (%2 ms)</translation>
    </message>
    <message>
        <source>Answered: %1</source>
        <translation>Antwort von: %1</translation>
    </message>
</context>
<context>
    <name>cnet::view::LinkForm</name>
    <message>
        <source>What is wrong with the fields</source>
        <translation>Was an den Feldern falsch ist</translation>
    </message>
    <message>
        <source>Simulator inside this program</source>
        <translation>Simulator in diesem Programm</translation>
    </message>
    <message>
        <source>TCP</source>
        <translation>TCP</translation>
    </message>
    <message>
        <source>Serial port</source>
        <translation>Serielle Schnittstelle</translation>
    </message>
    <message>
        <source>&amp;Over:</source>
        <translation>Ans&amp;chluss:</translation>
    </message>
    <message>
        <source>192.168.0.100 or a name</source>
        <translation>192.168.0.100 oder ein Name</translation>
    </message>
    <message>
        <source>TCP port</source>
        <translation>TCP-Port</translation>
    </message>
    <message>
        <source>&amp;Port:</source>
        <translation>&amp;Port:</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>even</source>
        <translation>gerade</translation>
    </message>
    <message>
        <source>odd</source>
        <translation>ungerade</translation>
    </message>
    <message>
        <source>&amp;Device:</source>
        <translation>&amp;Gerät:</translation>
    </message>
    <message>
        <source>Data b&amp;its:</source>
        <translation>Daten&amp;bits:</translation>
    </message>
    <message>
        <source>Parit&amp;y:</source>
        <translation>Pa&amp;rität:</translation>
    </message>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source> ms</source>
        <translation> ms</translation>
    </message>
    <message>
        <source>Read every</source>
        <translation>Lesezyklus</translation>
    </message>
    <message>
        <source>Wait for an answer</source>
        <translation>Max. Antwortzeit</translation>
    </message>
    <message>
        <source>found out by itself</source>
        <translation>wird ermittelt</translation>
    </message>
    <message>
        <source>as often as it goes</source>
        <translation>so oft es geht</translation>
    </message>
    <message>
        <source>&amp;Read every:</source>
        <translation>Lesezy&amp;klus:</translation>
    </message>
    <message>
        <source>&amp;Wait for an answer:</source>
        <translation>&amp;Max. Antwortzeit:</translation>
    </message>
    <message>
        <source>Say where the PLC is: an address or a name.</source>
        <translation>Geben Sie an, wo die SPS ist: Adresse oder Name.</translation>
    </message>
    <message>
        <source>Choose the port that the PLC is connected to.</source>
        <translation>Wählen Sie die Schnittstelle, an der die SPS hängt.</translation>
    </message>
    <message>
        <source>The serial line behind that port:</source>
        <translation>Die serielle Leitung hinter diesem Port:</translation>
    </message>
    <message>
        <source>Ba&amp;ud:</source>
        <translation>Ba&amp;ud:</translation>
    </message>
    <message>
        <source>Stop &amp;bits:</source>
        <translation>Stoppb&amp;its:</translation>
    </message>
    <message>
        <source>Hos&amp;t:</source>
        <translation>H&amp;ost:</translation>
    </message>
    <message>
        <source>St&amp;ation:</source>
        <translation>Sta&amp;tion:</translation>
    </message>
</context>
<context>
    <name>cnet::view::MainWindow</name>
    <message>
        <source>Install the driver beside this program.</source>
        <translation>Installieren Sie den Treiber neben diesem Programm.</translation>
    </message>
    <message>
        <source>What the window shows is as it was.</source>
        <translation>Die Anzeige ist unverändert.</translation>
    </message>
    <message>
        <source>%1 has changes that are not saved.</source>
        <translation>%1 hat Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Open a project or a tag file</source>
        <translation>Projekt oder Variablendatei öffnen</translation>
    </message>
    <message>
        <source>Projects (*.cnet-view);;Tag files (*.csv);;All files (*)</source>
        <translation>Projekte (*.cnet-view);;Variablendateien (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save the project</source>
        <translation>Projekt speichern</translation>
    </message>
    <message>
        <source>Projects (*.cnet-view)</source>
        <translation>Projekte (*.cnet-view)</translation>
    </message>
    <message>
        <source>Nothing is lost: save it elsewhere, or make room and try again.</source>
        <translation>Nichts ist verloren: woanders speichern oder Platz schaffen und neu versuchen.</translation>
    </message>
    <message>
        <source>Saved: %1</source>
        <translation>Gespeichert: %1</translation>
    </message>
    <message>
        <source>&amp;Close without saving</source>
        <translation>Ohne Speichern sch&amp;ließen</translation>
    </message>
    <message>
        <source>%1[*] - cnet-view</source>
        <translation>%1[*] - cnet-view</translation>
    </message>
    <message>
        <source>A window ended before its work was saved. The work is still there.</source>
        <translation>Ein Fenster endete, bevor seine Arbeit gespeichert war. Sie ist noch da.</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New window</source>
        <translation>&amp;Neues Fenster</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Öffn&amp;en...</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>Zuletzt &amp;geöffnet</translation>
    </message>
    <message>
        <source>Save &amp;as...</source>
        <translation>Speichern un&amp;ter...</translation>
    </message>
    <message>
        <source>&amp;Close window</source>
        <translation>Fenster s&amp;chließen</translation>
    </message>
    <message>
        <source>Ctrl+W</source>
        <translation>Ctrl+W</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>&amp;Beenden</translation>
    </message>
    <message>
        <source>Ctrl+Q</source>
        <translation>Ctrl+Q</translation>
    </message>
    <message>
        <source>No projects yet</source>
        <translation>Noch keine Projekte</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;Simulated press line</source>
        <translation>&amp;Simulierte Pressenlinie</translation>
    </message>
    <message>
        <source>&amp;About</source>
        <translation>Ü&amp;ber</translation>
    </message>
    <message>
        <source>cnet-view %1</source>
        <translation>cnet-view %1</translation>
    </message>
    <message>
        <source>A window on PLCs of the MASTER-K family over their Cnet link.</source>
        <translation>Ein Fenster auf SPSen der Familie MASTER-K über ihre Cnet-Schnittstelle.</translation>
    </message>
    <message>
        <source>Dis&amp;card and open another</source>
        <translation>Verwerfen und andere ö&amp;ffnen</translation>
    </message>
    <message>
        <source>Pi&amp;ck it up again</source>
        <translation>&amp;Wieder aufnehmen</translation>
    </message>
    <message>
        <source>F&amp;ull screen</source>
        <translation>Voll&amp;bild</translation>
    </message>
    <message>
        <source>Dis&amp;card and show the press line</source>
        <translation>Verwerfen und Pressen&amp;linie zeigen</translation>
    </message>
    <message>
        <source>%1 was stored by another window or program meanwhile.</source>
        <translation>%1 wurde inzwischen von einem anderen Fenster oder Programm gespeichert.</translation>
    </message>
    <message>
        <source>Another window has picked that work up.</source>
        <translation>Ein anderes Fenster hat diese Arbeit übernommen.</translation>
    </message>
    <message>
        <source>&amp;Save as...</source>
        <translation>&amp;Speichern unter...</translation>
    </message>
    <message>
        <source>Dis&amp;card that and save</source>
        <translation>Das &amp;verwerfen und speichern</translation>
    </message>
</context>
<context>
    <name>cnet::view::Markers</name>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
</context>
<context>
    <name>cnet::view::MessageBar</name>
    <message>
        <source>Message</source>
        <translation>Meldung</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the message</source>
        <translation>Meldung schließen</translation>
    </message>
</context>
<context>
    <name>cnet::view::MistakeList</name>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Field</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>What is wrong</source>
        <translation>Was falsch ist</translation>
    </message>
    <message>
        <source>Mistakes in the file</source>
        <translation>Fehler in der Datei</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Close the list of mistakes</source>
        <translation>Fehlerliste schließen</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
</context>
<context>
    <name>cnet::view::MistakesView</name>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Mistake</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Mistakes of the file</source>
        <translation>Fehler der Datei</translation>
    </message>
    <message>
        <source>The file, with its mistakes marked</source>
        <translation>Die Datei mit markierten Fehlern</translation>
    </message>
    <message>
        <source>%1 has mistakes. Correct them in an editor, then read it again.</source>
        <translation>%1 hat Fehler. Korrigieren Sie sie in einem Editor und lesen Sie die Datei neu ein.</translation>
    </message>
</context>
<context>
    <name>cnet::view::MotionForm</name>
    <message>
        <source>Let values move</source>
        <translation>Werte bewegen</translation>
    </message>
    <message>
        <source>Addresses that move</source>
        <translation>Bewegte Adressen</translation>
    </message>
    <message>
        <source>Lowest value</source>
        <translation>Kleinster Wert</translation>
    </message>
    <message>
        <source>Highest value</source>
        <translation>Größter Wert</translation>
    </message>
    <message>
        <source>Step of the counter</source>
        <translation>Schritt des Zählers</translation>
    </message>
    <message>
        <source>Milliseconds of a step or turn</source>
        <translation>Millisekunden je Schritt oder Periode</translation>
    </message>
    <message>
        <source>Kind of motion</source>
        <translation>Typ der Bewegung</translation>
    </message>
    <message>
        <source>Register that moves</source>
        <translation>Bewegtes Register</translation>
    </message>
    <message>
        <source>One address, or several as 500-519; of bits as 3.5-3.9</source>
        <translation>Eine Adresse oder mehrere als 500-519; bei Bits als 3.5-3.9</translation>
    </message>
    <message>
        <source>What became of the motion</source>
        <translation>Was aus der Bewegung wurde</translation>
    </message>
    <message>
        <source>&amp;Kind:</source>
        <translation>T&amp;yp:</translation>
    </message>
    <message>
        <source>Add&amp;resses:</source>
        <translation>Adresse&amp;n:</translation>
    </message>
    <message>
        <source>to</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>ms, by</source>
        <translation>ms, um</translation>
    </message>
    <message>
        <source>%1 moves.</source>
        <translation>%1 bewegt sich.</translation>
    </message>
    <message>
        <source>Let &amp;it move</source>
        <translation>&amp;Bewegen</translation>
    </message>
    <message>
        <source>Fro&amp;m:</source>
        <translation>V&amp;on:</translation>
    </message>
    <message>
        <source>Ever&amp;y:</source>
        <translation>Ta&amp;kt:</translation>
    </message>
</context>
<context>
    <name>cnet::view::ProjectDocument</name>
    <message>
        <source>New project</source>
        <translation>Neues Projekt</translation>
    </message>
    <message>
        <source>The connection of the project cannot be used.</source>
        <translation>Die Verbindung des Projekts ist nicht brauchbar.</translation>
    </message>
    <message>
        <source>Choose one on the Connect page; until then nothing is connected.</source>
        <translation>Wählen Sie eine auf der Seite Verbinden; bis dahin ist nichts verbunden.</translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipeDelegate</name>
    <message>
        <source>Value of %1</source>
        <translation>Wert von %1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no value; expected %2.</source>
        <translation>&apos;%1&apos; ist kein Wert; erwartet: %2.</translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipeModel</name>
    <message numerus="yes">
        <source>There are %n values to paste</source>
        <translation>
            <numerusform>Es ist %n Wert einzufügen</numerusform>
            <numerusform>Es sind %n Werte einzufügen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>, and only %n rows from here on.</source>
        <translation>
            <numerusform>, ab hier ist aber nur %n Zeile.</numerusform>
            <numerusform>, ab hier sind aber nur %n Zeilen.</numerusform>
        </translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no value; expected %2.</source>
        <translation>&apos;%1&apos; ist kein Wert; erwartet: %2.</translation>
    </message>
    <message>
        <source>paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>take the values of the PLC</source>
        <translation>Werte der SPS übernehmen</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Bedeutung</translation>
    </message>
    <message>
        <source>Recipe</source>
        <translation>Rezept</translation>
    </message>
    <message>
        <source>PLC</source>
        <translation>SPS</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>No value. Expected %1.</source>
        <translation>Kein Wert. Erwartet: %1.</translation>
    </message>
    <message>
        <source>Not known. Compare to read it.</source>
        <translation>Nicht bekannt. Zum Lesen vergleichen.</translation>
    </message>
    <message>
        <source>Not saved; the file has %1.</source>
        <translation>Nicht gespeichert; in der Datei steht %1.</translation>
    </message>
    <message>
        <source>Not saved; the file has no value.</source>
        <translation>Nicht gespeichert; in der Datei steht kein Wert.</translation>
    </message>
    <message>
        <source>%1, not saved</source>
        <translation>%1, nicht gespeichert</translation>
    </message>
    <message>
        <source>set %1</source>
        <translation>%1 setzen</translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipeTransfer</name>
    <message>
        <source>cancelled before it was read back</source>
        <translation>abgebrochen, bevor zurückgelesen wurde</translation>
    </message>
    <message>
        <source>the line was lost</source>
        <translation>die Verbindung ging verloren</translation>
    </message>
</context>
<context>
    <name>cnet::view::RecipesPage</name>
    <message>
        <source>No recipe is open.

A recipe is a CSV file of values that go to the PLC together. Its first line names the columns, each other line is a row of words:

station,register,address,count,value
1,D_W,200,3,100,250,0x01FF

Open one, or drop it here.</source>
        <translation>Kein Rezept ist offen.

Ein Rezept ist eine CSV-Datei mit Werten, die zusammen in die SPS gehen. Die erste Zeile nennt die Spalten, jede weitere ist eine Reihe von Wörtern:

station,register,address,count,value
1,D_W,200,3,100,250,0x01FF

Öffnen Sie eines, oder ziehen Sie es hierher.</translation>
    </message>
    <message>
        <source>Cance&amp;l</source>
        <translation>A&amp;bbrechen</translation>
    </message>
    <message>
        <source>&amp;Recipes</source>
        <translation>&amp;Rezepte</translation>
    </message>
    <message>
        <source>Recipe and PLC side by side</source>
        <translation>Rezept und SPS nebeneinander</translation>
    </message>
    <message>
        <source>Recipe</source>
        <translation>Rezept</translation>
    </message>
    <message>
        <source>&amp;Open...</source>
        <translation>Öffn&amp;en...</translation>
    </message>
    <message>
        <source>Open a recipe file</source>
        <translation>Rezeptdatei öffnen</translation>
    </message>
    <message>
        <source>Read a&amp;gain</source>
        <translation>&amp;Neu einlesen</translation>
    </message>
    <message>
        <source>Read the file again from the disk</source>
        <translation>Die Datei erneut von der Platte lesen</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>S&amp;peichern</translation>
    </message>
    <message>
        <source>Save the recipe in its file</source>
        <translation>Das Rezept in seine Datei speichern</translation>
    </message>
    <message>
        <source>Save &amp;as...</source>
        <translation>Speichern un&amp;ter...</translation>
    </message>
    <message>
        <source>Save the recipe in another file</source>
        <translation>Das Rezept in eine andere Datei speichern</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>Rüc&amp;kgängig</translation>
    </message>
    <message>
        <source>Undo the last edit</source>
        <translation>Letzte Änderung zurücknehmen</translation>
    </message>
    <message>
        <source>Re&amp;do</source>
        <translation>Wiederh&amp;olen</translation>
    </message>
    <message>
        <source>Redo what was undone</source>
        <translation>Zurückgenommenes wiederholen</translation>
    </message>
    <message>
        <source>&amp;Compare with PLC</source>
        <translation>Mit SPS ver&amp;gleichen</translation>
    </message>
    <message>
        <source>Read what the PLC has, and mark what differs</source>
        <translation>Lesen, was die SPS hat, und Unterschiede markieren</translation>
    </message>
    <message>
        <source>Only di&amp;fferences</source>
        <translation>Nur &amp;Unterschiede</translation>
    </message>
    <message>
        <source>Show only rows that differ from the PLC</source>
        <translation>Nur Zeilen zeigen, die von der SPS abweichen</translation>
    </message>
    <message>
        <source>&amp;Take from PLC</source>
        <translation>Von SPS überneh&amp;men</translation>
    </message>
    <message>
        <source>Read the values of the PLC into the recipe; to be undone at once</source>
        <translation>Werte der SPS ins Rezept lesen; in einem Schritt rückgängig zu machen</translation>
    </message>
    <message>
        <source>&amp;Write to PLC</source>
        <translation>Zur SPS s&amp;chreiben</translation>
    </message>
    <message>
        <source>Write the recipe to the PLC, and read back whether it has it</source>
        <translation>Das Rezept in die SPS schreiben und durch Zurücklesen prüfen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste values</source>
        <translation>Werte &amp;einfügen</translation>
    </message>
    <message>
        <source>Open a reci&amp;pe...</source>
        <translation>Re&amp;zept öffnen...</translation>
    </message>
    <message>
        <source>Progress of the transfer</source>
        <translation>Fortschritt der Übertragung</translation>
    </message>
    <message>
        <source>%v of %m words</source>
        <translation>%v von %m Wörtern</translation>
    </message>
    <message>
        <source>State of the recipe</source>
        <translation>Zustand des Rezepts</translation>
    </message>
    <message numerus="yes">
        <source>%n words</source>
        <translation>
            <numerusform>%n Wort</numerusform>
            <numerusform>%n Wörter</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n without a value</source>
        <translation>
            <numerusform>%n ohne Wert</numerusform>
            <numerusform>%n ohne Wert</numerusform>
        </translation>
    </message>
    <message>
        <source>not compared with the PLC yet</source>
        <translation>noch nicht mit der SPS verglichen</translation>
    </message>
    <message numerus="yes">
        <source>%n the same</source>
        <translation>
            <numerusform>%n gleich</numerusform>
            <numerusform>%n gleich</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n different</source>
        <translation>
            <numerusform>%n verschieden</numerusform>
            <numerusform>%n verschieden</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n not known</source>
        <translation>
            <numerusform>%n unbekannt</numerusform>
            <numerusform>%n unbekannt</numerusform>
        </translation>
    </message>
    <message>
        <source>PLC as at %1</source>
        <translation>SPS um %1</translation>
    </message>
    <message>
        <source>not saved</source>
        <translation>nicht gespeichert</translation>
    </message>
    <message>
        <source>Nothing was pasted.</source>
        <translation>Nichts wurde eingefügt.</translation>
    </message>
    <message>
        <source>Recipes (*.csv);;All files (*)</source>
        <translation>Rezepte (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>it is no file</source>
        <translation>es ist keine Datei</translation>
    </message>
    <message>
        <source>it is longer than a recipe can be, %1 bytes</source>
        <translation>länger, als ein Rezept sein kann: %1 Byte</translation>
    </message>
    <message>
        <source>another file was opened</source>
        <translation>eine andere Datei wurde geöffnet</translation>
    </message>
    <message>
        <source>edits of the project</source>
        <translation>Änderungen des Projekts</translation>
    </message>
    <message numerus="yes">
        <source>%n edits of the project do not fit the file any more.</source>
        <translation>
            <numerusform>%n Änderung des Projekts passt nicht mehr zur Datei.</numerusform>
            <numerusform>%n Änderungen des Projekts passen nicht mehr zur Datei.</numerusform>
        </translation>
    </message>
    <message>
        <source>Look through %1: it was changed since.</source>
        <translation>Sehen Sie %1 durch: die Datei wurde seither geändert.</translation>
    </message>
    <message>
        <source>%1 has edits that are not saved.</source>
        <translation>%1 hat Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>&amp;Keep editing</source>
        <translation>Weiter &amp;bearbeiten</translation>
    </message>
    <message>
        <source>Open &amp;without saving</source>
        <translation>&amp;Ohne Speichern öffnen</translation>
    </message>
    <message>
        <source>%1 was not opened: a transfer is running.</source>
        <translation>%1 wurde nicht geöffnet: eine Übertragung läuft.</translation>
    </message>
    <message>
        <source>Cancel it, or wait until it has ended.</source>
        <translation>Brechen Sie sie ab, oder warten Sie, bis sie fertig ist.</translation>
    </message>
    <message>
        <source>Cannot read %1: %2</source>
        <translation>%1 lässt sich nicht lesen: %2</translation>
    </message>
    <message>
        <source>Check the name of the file and who may read it.</source>
        <translation>Prüfen Sie den Namen der Datei und wer sie lesen darf.</translation>
    </message>
    <message>
        <source>%1 has mistakes: %2</source>
        <translation>%1 hat Fehler: %2</translation>
    </message>
    <message>
        <source>The page for recipes shows them in their places. Correct them, then read the file again.</source>
        <translation>Die Seite Rezepte zeigt sie an ihrer Stelle. Korrigieren Sie sie und lesen Sie die Datei neu ein.</translation>
    </message>
    <message>
        <source>The recipe was not saved: the row of words with %1 has some values only.</source>
        <translation>Das Rezept wurde nicht gespeichert: der Reihe von Wörtern mit %1 fehlen Werte.</translation>
    </message>
    <message>
        <source>Type the missing ones, or take them from the PLC.</source>
        <translation>Tragen Sie die fehlenden ein, oder übernehmen Sie sie von der SPS.</translation>
    </message>
    <message>
        <source>%1 was changed by somebody else since it was read.</source>
        <translation>%1 wurde seit dem Lesen von jemand anderem geändert.</translation>
    </message>
    <message>
        <source>&amp;Replace it</source>
        <translation>&amp;Ersetzen</translation>
    </message>
    <message>
        <source>Cannot write %1: %2</source>
        <translation>%1 lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>Nothing was changed there. Save the recipe somewhere else, or make room.</source>
        <translation>Dort wurde nichts geändert. Speichern Sie das Rezept woanders, oder schaffen Sie Platz.</translation>
    </message>
    <message>
        <source>%1 was saved.</source>
        <translation>%1 wurde gespeichert.</translation>
    </message>
    <message>
        <source>Open a recipe</source>
        <translation>Rezept öffnen</translation>
    </message>
    <message>
        <source>Save the recipe</source>
        <translation>Rezept speichern</translation>
    </message>
    <message>
        <source>Writing to the PLC:</source>
        <translation>Schreibe zur SPS:</translation>
    </message>
    <message>
        <source>Reading the PLC:</source>
        <translation>Lese die SPS:</translation>
    </message>
    <message>
        <source>A transfer is running already.</source>
        <translation>Eine Übertragung läuft schon.</translation>
    </message>
    <message>
        <source>No recipe is open.</source>
        <translation>Kein Rezept ist offen.</translation>
    </message>
    <message>
        <source>Open a recipe file first.</source>
        <translation>Öffnen Sie zuerst eine Rezeptdatei.</translation>
    </message>
    <message>
        <source>The PLC cannot be reached: %1</source>
        <translation>Die SPS ist nicht erreichbar: %1</translation>
    </message>
    <message>
        <source>Connect first, then try again.</source>
        <translation>Erst verbinden, dann neu versuchen.</translation>
    </message>
    <message>
        <source>The recipe does not fit station %1: %2</source>
        <translation>Das Rezept passt nicht zur Station %1: %2</translation>
    </message>
    <message>
        <source>Give each line of the file its station, or choose another station for the connection.</source>
        <translation>Geben Sie jeder Zeile der Datei ihre Station, oder wählen Sie eine andere Station für die Verbindung.</translation>
    </message>
    <message>
        <source>Nothing was written: %1 has no value.</source>
        <translation>Nichts wurde geschrieben: %1 hat keinen Wert.</translation>
    </message>
    <message>
        <source>Type the missing values, or take them from the PLC.</source>
        <translation>Tragen Sie die fehlenden Werte ein, oder übernehmen Sie sie von der SPS.</translation>
    </message>
    <message>
        <source>Nothing was written: %1</source>
        <translation>Nichts wurde geschrieben: %1</translation>
    </message>
    <message>
        <source>Take line %1 out of the file.</source>
        <translation>Nehmen Sie Zeile %1 aus der Datei.</translation>
    </message>
    <message>
        <source>the connection was ended</source>
        <translation>die Verbindung wurde beendet</translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n words were read: %2</source>
        <translation>
            <numerusform>%1 von %n Wort gelesen: %2</numerusform>
            <numerusform>%1 von %n Wörtern gelesen: %2</numerusform>
        </translation>
    </message>
    <message>
        <source>No value was taken over. Try again.</source>
        <translation>Kein Wert wurde übernommen. Versuchen Sie es erneut.</translation>
    </message>
    <message>
        <source>What was read is compared. Try again for the rest.</source>
        <translation>Gelesenes ist verglichen. Für den Rest erneut versuchen.</translation>
    </message>
    <message>
        <source>The PLC has the values of the recipe: nothing has changed.</source>
        <translation>Die SPS hat die Werte des Rezepts: nichts hat sich geändert.</translation>
    </message>
    <message numerus="yes">
        <source>%n values were taken from the PLC.</source>
        <translation>
            <numerusform>%n Wert von der SPS übernommen.</numerusform>
            <numerusform>%n Werte von der SPS übernommen.</numerusform>
        </translation>
    </message>
    <message>
        <source>The PLC has all values of the recipe.</source>
        <translation>Die SPS hat alle Werte des Rezepts.</translation>
    </message>
    <message numerus="yes">
        <source>%n words differ from the PLC.</source>
        <translation>
            <numerusform>%n Wort weicht von der SPS ab.</numerusform>
            <numerusform>%n Wörter weichen von der SPS ab.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n words were written and verified.</source>
        <translation>
            <numerusform>%n Wort geschrieben und geprüft.</numerusform>
            <numerusform>%n Wörter geschrieben und geprüft.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Written, but %n words are not what was written.</source>
        <translation>
            <numerusform>Geschrieben, aber %n Wort steht anders in der SPS.</numerusform>
            <numerusform>Geschrieben, aber %n Wörter stehen anders in der SPS.</numerusform>
        </translation>
    </message>
    <message>
        <source>They are marked. Does a program of the PLC write there, too?</source>
        <translation>Sie sind markiert. Schreibt das SPS-Programm auch dorthin?</translation>
    </message>
    <message numerus="yes">
        <source>The recipe was not written as a whole: %1. %2 of %n words are in the PLC, %3 of them verified.</source>
        <translation>
            <numerusform>Das Rezept wurde nicht ganz geschrieben: %1. %2 von %n Wort in der SPS, davon %3 geprüft.</numerusform>
            <numerusform>Das Rezept wurde nicht ganz geschrieben: %1. %2 von %n Wörtern in der SPS, davon %3 geprüft.</numerusform>
        </translation>
    </message>
    <message>
        <source>The PLC may have a part of it. Write it again, or compare to see what it has.</source>
        <translation>Die SPS hat vielleicht einen Teil davon. Schreiben Sie es neu, oder vergleichen Sie, was sie hat.</translation>
    </message>
    <message>
        <source>&amp;Save, then open</source>
        <translation>S&amp;peichern, dann öffnen</translation>
    </message>
    <message>
        <source>Correct it, or press Esc.</source>
        <translation>Berichtigen Sie ihn, oder drücken Sie Esc.</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>&amp;Yes, write</source>
        <translation>&amp;Ja, schreiben</translation>
    </message>
    <message numerus="yes">
        <source>Write %n words to %1, %2?</source>
        <translation>
            <numerusform>%n Wort nach %1, %2, schreiben?</numerusform>
            <numerusform>%n Wörter nach %1, %2, schreiben?</numerusform>
        </translation>
    </message>
    <message>
        <source>station %1</source>
        <translation>Station %1</translation>
    </message>
    <message>
        <source>stations %1</source>
        <translation>Stationen %1</translation>
    </message>
</context>
<context>
    <name>cnet::view::Recovery</name>
    <message>
        <source>Unsaved work cannot be kept in %1.</source>
        <translation>Ungespeicherte Arbeit lässt sich in %1 nicht sichern.</translation>
    </message>
    <message>
        <source>Save the project: should the program end now, its changes are lost.</source>
        <translation>Speichern Sie das Projekt: endet das Programm jetzt, gehen die Änderungen verloren.</translation>
    </message>
    <message>
        <source>Unsaved work in %1 cannot be read: %2</source>
        <translation>Ungespeicherte Arbeit in %1 lässt sich nicht lesen: %2</translation>
    </message>
</context>
<context>
    <name>cnet::view::ScanPanel</name>
    <message>
        <source>Find out how far their re&amp;gisters reach, too</source>
        <translation>Auch ermitteln, wie weit ihre Re&amp;gister reichen</translation>
    </message>
    <message>
        <source>Stop the sca&amp;n</source>
        <translation>Suche abbr&amp;echen</translation>
    </message>
    <message>
        <source>C&amp;onnect to this</source>
        <translation>Damit ver&amp;binden</translation>
    </message>
    <message>
        <source>Progress of the scan</source>
        <translation>Fortschritt der Suche</translation>
    </message>
    <message>
        <source>State of the scan</source>
        <translation>Zustand der Suche</translation>
    </message>
    <message>
        <source>A scan asks each station number whether somebody is there. It only reads. It needs the line for itself: the live connection is closed while it runs, and opened again afterwards as it was.</source>
        <translation>Die Suche fragt bei jeder Stationsnummer, ob jemand da ist. Sie liest nur. Sie braucht die Leitung für sich: die laufende Verbindung wird so lange geschlossen und danach wieder geöffnet, wie sie war.</translation>
    </message>
    <message>
        <source>S&amp;tations:</source>
        <translation>Sta&amp;tionen:</translation>
    </message>
    <message>
        <source>Stations to ask</source>
        <translation>Zu fragende Stationen</translation>
    </message>
    <message>
        <source>From 0 to 31, for example 1,3,8-15</source>
        <translation>Von 0 bis 31, zum Beispiel 1,3,8-15</translation>
    </message>
    <message>
        <source>S&amp;peed:</source>
        <translation>&amp;Parameter:</translation>
    </message>
    <message>
        <source>Line settings to try</source>
        <translation>Zu probierende Leitungsparameter</translation>
    </message>
    <message>
        <source>Stations that answered the scan</source>
        <translation>Stationen, die geantwortet haben</translation>
    </message>
    <message>
        <source>Copy as table</source>
        <translation>Als Tabelle kopieren</translation>
    </message>
    <message>
        <source>Only the settings of a serial port of this computer can be searched for.</source>
        <translation>Nur die Parameter einer seriellen Schnittstelle dieses Rechners lassen sich suchen.</translation>
    </message>
    <message>
        <source>expected stations from 0 to 31, for example 1,3,8-15</source>
        <translation>erwartet: Stationen von 0 bis 31, zum Beispiel 1,3,8-15</translation>
    </message>
    <message>
        <source>Not scanned yet.</source>
        <translation>Noch nicht abgesucht.</translation>
    </message>
    <message numerus="yes">
        <source>Scanning with %1; %n stations so far. The live values stand still.</source>
        <translation>
            <numerusform>Suche mit %1; bisher %n Station. Die Live-Werte stehen still.</numerusform>
            <numerusform>Suche mit %1; bisher %n Stationen. Die Live-Werte stehen still.</numerusform>
        </translation>
    </message>
    <message>
        <source>Scanning with %1. The live values stand still.</source>
        <translation>Suche mit %1. Die Live-Werte stehen still.</translation>
    </message>
    <message numerus="yes">
        <source>%n stations answered.</source>
        <translation>
            <numerusform>%n Station hat geantwortet.</numerusform>
            <numerusform>%n Stationen haben geantwortet.</numerusform>
        </translation>
    </message>
    <message>
        <source>No station answered. Check the cable, the speed, and that the PLC&apos;s port is set to its link protocol.</source>
        <translation>Keine Station hat geantwortet. Prüfen Sie Kabel und Baudrate, und ob die SPS-Schnittstelle auf ihr Link-Protokoll eingestellt ist.</translation>
    </message>
    <message numerus="yes">
        <source>Stopped; %n stations had answered until then.</source>
        <translation>
            <numerusform>Abgebrochen; bis dahin hatte %n Station geantwortet.</numerusform>
            <numerusform>Abgebrochen; bis dahin hatten %n Stationen geantwortet.</numerusform>
        </translation>
    </message>
    <message>
        <source>The line failed: %1</source>
        <translation>Die Leitung ist ausgefallen: %1</translation>
    </message>
    <message>
        <source>Check the connection, and scan again.</source>
        <translation>Prüfen Sie die Verbindung und suchen Sie erneut.</translation>
    </message>
    <message numerus="yes">
        <source>%n rows were copied.</source>
        <translation>
            <numerusform>%n Zeile wurde kopiert.</numerusform>
            <numerusform>%n Zeilen wurden kopiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Begin the scan</source>
        <translation>S&amp;uche starten</translation>
    </message>
</context>
<context>
    <name>cnet::view::ScanTable</name>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>Line settings</source>
        <translation>Leitungsparameter</translation>
    </message>
    <message>
        <source>Answers</source>
        <translation>Antworten</translation>
    </message>
    <message>
        <source>Mean, ms</source>
        <translation>Mittel, ms</translation>
    </message>
    <message>
        <source>Longest, ms</source>
        <translation>Längste, ms</translation>
    </message>
    <message>
        <source>Registers</source>
        <translation>Register</translation>
    </message>
</context>
<context>
    <name>cnet::view::SidePanel</name>
    <message>
        <source>Traces</source>
        <translation>Kurven</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Highlight</source>
        <translation>Hervorheben</translation>
    </message>
    <message>
        <source>Next colour</source>
        <translation>Nächste Farbe</translation>
    </message>
    <message>
        <source>Go to</source>
        <translation>Hingehen</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Bearbeiten</translation>
    </message>
</context>
<context>
    <name>cnet::view::Simulator</name>
    <message>
        <source>There is no simulated PLC.</source>
        <translation>Es gibt keine simulierte SPS.</translation>
    </message>
</context>
<context>
    <name>cnet::view::SimulatorPage</name>
    <message>
        <source>A&amp;ll off</source>
        <translation>Alle auss&amp;chalten</translation>
    </message>
    <message>
        <source>The simulated press line inside the program. The press goes on computing its own values, so what you set there may not stay; a motion has the last word.</source>
        <translation>Die simulierte Pressenlinie im Programm. Die Presse rechnet ihre eigenen Werte weiter, was Sie dort setzen, bleibt also vielleicht nicht; eine Bewegung hat das letzte Wort.</translation>
    </message>
    <message>
        <source>S&amp;tation:</source>
        <translation>Sta&amp;tion:</translation>
    </message>
    <message>
        <source>Station that is meant</source>
        <translation>Gemeinte Station</translation>
    </message>
    <message>
        <source>Motions and faults that are on</source>
        <translation>Eingeschaltete Bewegungen und Fehler</translation>
    </message>
    <message>
        <source>Switch this off</source>
        <translation>Dies ausschalten</translation>
    </message>
    <message>
        <source>This line goes to a real PLC: nothing is simulated.
Connect to the simulator to try here what trouble looks like.</source>
        <translation>Diese Leitung führt zu einer echten SPS: nichts ist simuliert.
Verbinden Sie den Simulator, um hier zu sehen, wie Störungen aussehen.</translation>
    </message>
    <message>
        <source>Not connected.
Connect to the simulator to try here what trouble looks like.</source>
        <translation>Nicht verbunden.
Verbinden Sie den Simulator, um hier zu sehen, wie Störungen aussehen.</translation>
    </message>
    <message>
        <source>all</source>
        <translation>alle</translation>
    </message>
    <message>
        <source>S&amp;imulator</source>
        <translation>S&amp;imulator</translation>
    </message>
    <message>
        <source>S&amp;witch this off</source>
        <translation>Dies a&amp;usschalten</translation>
    </message>
</context>
<context>
    <name>cnet::view::StateLabel</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Connection: %1</source>
        <translation>Verbindung: %1</translation>
    </message>
</context>
<context>
    <name>cnet::view::StationDetails</name>
    <message>
        <source>What</source>
        <translation>Was</translation>
    </message>
    <message>
        <source>Times</source>
        <translation>Anzahl</translation>
    </message>
    <message>
        <source>What went wrong, by kind</source>
        <translation>Probleme nach Art</translation>
    </message>
    <message>
        <source>Addresses</source>
        <translation>Adressen</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Grund</translation>
    </message>
    <message>
        <source>Refused addresses</source>
        <translation>Abgelehnte Adressen</translation>
    </message>
    <message>
        <source>Response times in words</source>
        <translation>Antwortzeiten in Worten</translation>
    </message>
    <message>
        <source>Response times (dashed: median and 95 %)</source>
        <translation>Antwortzeiten (gestrichelt: Median und 95 %)</translation>
    </message>
    <message>
        <source>What went &amp;wrong:</source>
        <translation>&amp;Probleme:</translation>
    </message>
    <message>
        <source>Refused &amp;addresses:</source>
        <translation>Ab&amp;gelehnte Adressen:</translation>
    </message>
    <message>
        <source>Station %1 %2: %3</source>
        <translation>Station %1 %2: %3</translation>
    </message>
    <message>
        <source>Station %1: %2</source>
        <translation>Station %1: %2</translation>
    </message>
    <message>
        <source>No station was asked anything yet.</source>
        <translation>Noch keine Station wurde gefragt.</translation>
    </message>
</context>
<context>
    <name>cnet::view::StationTable</name>
    <message>
        <source>Station</source>
        <translation>Station</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Requests</source>
        <translation>Abfragen</translation>
    </message>
    <message>
        <source>Per
second</source>
        <translation>Pro
Sekunde</translation>
    </message>
    <message>
        <source>No
answer</source>
        <translation>Keine
Antwort</translation>
    </message>
    <message>
        <source>Wrong
checks</source>
        <translation>Falsche
Prüfung</translation>
    </message>
    <message>
        <source>Other bad
answers</source>
        <translation>Sonst
schlecht</translation>
    </message>
    <message>
        <source>Refusals</source>
        <translation>Abgelehnt</translation>
    </message>
    <message>
        <source>Refused
addresses</source>
        <translation>Abgelehnte
Adressen</translation>
    </message>
    <message>
        <source>Late
answers</source>
        <translation>Zu spät</translation>
    </message>
    <message>
        <source>Repeated</source>
        <translation>Wiederholt</translation>
    </message>
    <message>
        <source>Median,
ms</source>
        <translation>Median,
ms</translation>
    </message>
    <message>
        <source>95 %,
ms</source>
        <translation>95 %,
ms</translation>
    </message>
    <message>
        <source>Longest,
ms</source>
        <translation>Längste,
ms</translation>
    </message>
    <message>
        <source>Its number on the line</source>
        <translation>Ihre Nummer an der Leitung</translation>
    </message>
    <message>
        <source>How its last request ended</source>
        <translation>Wie ihre letzte Abfrage endete</translation>
    </message>
    <message>
        <source>Requests sent to it, repetitions included</source>
        <translation>An sie gesendete Abfragen, mit Wiederholungen</translation>
    </message>
    <message>
        <source>Requests a second, over the last five seconds</source>
        <translation>Abfragen pro Sekunde, über die letzten fünf Sekunden</translation>
    </message>
    <message>
        <source>Requests to which nothing came in time</source>
        <translation>Abfragen, auf die rechtzeitig nichts kam</translation>
    </message>
    <message>
        <source>Answers that were damaged on the way: their block check was wrong</source>
        <translation>Unterwegs beschädigte Antworten: die Blockprüfung war falsch</translation>
    </message>
    <message>
        <source>Answers that were cut short, too long, or of another station or request</source>
        <translation>Antworten, die abgeschnitten oder zu lang waren oder von einer anderen Station oder Abfrage</translation>
    </message>
    <message>
        <source>Requests that it refused with an error code</source>
        <translation>Abfragen, die sie mit einem Fehlercode abgelehnt hat</translation>
    </message>
    <message>
        <source>Blocks of addresses of which requests were refused</source>
        <translation>Adressblöcke, deren Abfrage abgelehnt wurde</translation>
    </message>
    <message>
        <source>Answers that came after their time-out, and were not used</source>
        <translation>Antworten, die nach Ablauf der Wartezeit kamen und nicht verwendet wurden</translation>
    </message>
    <message>
        <source>Requests that were sent again</source>
        <translation>Abfragen, die wiederholt wurden</translation>
    </message>
    <message>
        <source>Half of the answers took no longer</source>
        <translation>Die Hälfte der Antworten brauchte nicht länger</translation>
    </message>
    <message>
        <source>95 of 100 answers took no longer</source>
        <translation>95 von 100 Antworten brauchten nicht länger</translation>
    </message>
    <message>
        <source>The slowest answer</source>
        <translation>Die langsamste Antwort</translation>
    </message>
</context>
<context>
    <name>cnet::view::StationsPage</name>
    <message>
        <source>Count from &amp;0 again</source>
        <translation>Ab &amp;0 neu zählen</translation>
    </message>
    <message>
        <source>Parts of the page</source>
        <translation>Teile der Seite</translation>
    </message>
    <message>
        <source>N&amp;umbers</source>
        <translation>&amp;Zahlen</translation>
    </message>
    <message>
        <source>Scan the &amp;line</source>
        <translation>Leitung absu&amp;chen</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>Stationen</translation>
    </message>
    <message>
        <source>Copy as table</source>
        <translation>Als Tabelle kopieren</translation>
    </message>
    <message>
        <source>Cop&amp;y as table</source>
        <translation>Als Tabelle &amp;kopieren</translation>
    </message>
    <message>
        <source>The line is closed; these are the numbers from before.</source>
        <translation>Die Leitung ist geschlossen; dies sind die Zahlen von vorher.</translation>
    </message>
    <message>
        <source>Not connected: nothing is counted.</source>
        <translation>Nicht verbunden: nichts wird gezählt.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message numerus="yes">
        <source>counted for %n seconds</source>
        <translation>
            <numerusform>seit %n Sekunde gezählt</numerusform>
            <numerusform>seit %n Sekunden gezählt</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>counted for %n minutes</source>
        <translation>
            <numerusform>seit %n Minute gezählt</numerusform>
            <numerusform>seit %n Minuten gezählt</numerusform>
        </translation>
    </message>
    <message>
        <source>%1: %2; %3</source>
        <translation>%1: %2; %3</translation>
    </message>
    <message>
        <source>The numbers count from 0 again.</source>
        <translation>Die Zahlen zählen wieder ab 0.</translation>
    </message>
    <message numerus="yes">
        <source>%n rows were copied.</source>
        <translation>
            <numerusform>%n Zeile wurde kopiert.</numerusform>
            <numerusform>%n Zeilen wurden kopiert.</numerusform>
        </translation>
    </message>
    <message>
        <source>&amp;Stations</source>
        <translation>&amp;Stationen</translation>
    </message>
</context>
<context>
    <name>cnet::view::TagDocument</name>
    <message>
        <source>%1 cannot be opened: %2</source>
        <translation>%1 lässt sich nicht öffnen: %2</translation>
    </message>
    <message>
        <source>Look whether it is there and may be read.</source>
        <translation>Sehen Sie nach, ob die Datei da ist und gelesen werden darf.</translation>
    </message>
    <message>
        <source>%1 is no tag file: it is too large</source>
        <translation>%1 ist keine Variablendatei: sie ist zu groß</translation>
    </message>
    <message>
        <source>%1 was not saved: somebody has changed it since</source>
        <translation>%1 wurde nicht gespeichert: jemand hat die Datei seither geändert</translation>
    </message>
    <message>
        <source>Save under another name, or open it again.</source>
        <translation>Speichern Sie unter anderem Namen, oder öffnen Sie sie neu.</translation>
    </message>
    <message>
        <source>%1 was not saved: %2</source>
        <translation>%1 wurde nicht gespeichert: %2</translation>
    </message>
    <message>
        <source>Save under another name or in another place.</source>
        <translation>Speichern Sie unter anderem Namen oder an anderer Stelle.</translation>
    </message>
    <message>
        <source>%1 cannot be opened: it is no file</source>
        <translation>%1 kann nicht geöffnet werden: es ist keine Datei</translation>
    </message>
    <message>
        <source>Choose a file with tags.</source>
        <translation>Wählen Sie eine Datei mit Variablen.</translation>
    </message>
    <message>
        <source>%1 was not saved: it is no file</source>
        <translation>%1 wurde nicht gespeichert: es ist keine Datei</translation>
    </message>
</context>
<context>
    <name>cnet::view::TagEntry</name>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>A&amp;dd:</source>
        <translation>Hin&amp;zufügen:</translation>
    </message>
    <message>
        <source>Item or name of a tag to add</source>
        <translation>Adresse oder Name einer Variablen, die dazukommt</translation>
    </message>
    <message>
        <source>An address with its type and scale, a name in front where you like, or the name of a tag</source>
        <translation>Eine Adresse mit Typ und Faktor, nach Wunsch ein Name davor, oder der Name einer Variablen</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is no name: letters, digits and . _ - / are, with a letter or _ in front, for example oil.level=D_W:100@u16</source>
        <translation>&apos;%1&apos; ist kein Name: erlaubt sind Buchstaben, Ziffern und . _ - /, vorn ein Buchstabe oder _, zum Beispiel oil.level=D_W:100@u16</translation>
    </message>
    <message>
        <source>%1 is the name of another tag already</source>
        <translation>%1 heißt schon eine andere Variable</translation>
    </message>
    <message>
        <source>D_W:112@u16*0.1-40, or oil.level=D_W:100</source>
        <translation>D_W:112@u16*0.1-40 oder oil.level=D_W:100</translation>
    </message>
    <message>
        <source>; type, scale and offset follow behind @: D_W:112@u16*0.1-40</source>
        <translation>; Typ, Faktor und Offset folgen hinter @: D_W:112@u16*0.1-40</translation>
    </message>
</context>
<context>
    <name>cnet::view::TagList</name>
    <message>
        <source>%1 is in the table already</source>
        <translation>%1 ist schon in der Tabelle</translation>
    </message>
    <message>
        <source>add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <source>remove %1</source>
        <translation>%1 entfernen</translation>
    </message>
    <message numerus="yes">
        <source>remove %n tags</source>
        <translation>
            <numerusform>%n Variable entfernen</numerusform>
            <numerusform>%n Variablen entfernen</numerusform>
        </translation>
    </message>
    <message>
        <source>open %1</source>
        <translation>%1 öffnen</translation>
    </message>
    <message>
        <source>name tags</source>
        <translation>Variablen benennen</translation>
    </message>
</context>
<context>
    <name>cnet::view::TraceSet</name>
    <message>
        <source>Pane</source>
        <translation>Feld</translation>
    </message>
    <message>
        <source>left</source>
        <translation>links</translation>
    </message>
    <message>
        <source>right</source>
        <translation>rechts</translation>
    </message>
    <message>
        <source>Scale</source>
        <translation>Achse</translation>
    </message>
    <message>
        <source>lane</source>
        <translation>Spur</translation>
    </message>
    <message>
        <source>bits</source>
        <translation>Bits</translation>
    </message>
    <message>
        <source>Trace</source>
        <translation>Kurve</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
</context>
<context>
    <name>cnet::view::TrendActions</name>
    <message>
        <source>Follow</source>
        <translation>Folgen</translation>
    </message>
    <message>
        <source>Go along with the time</source>
        <translation>Mit der Zeit mitlaufen</translation>
    </message>
    <message>
        <source>Pause</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>Keep the picture; samples are collected all the same</source>
        <translation>Bild anhalten; Messwerte werden weiter gesammelt</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>What was seen before</source>
        <translation>Vorige Ansicht</translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation>Größer</translation>
    </message>
    <message>
        <source>Half the time</source>
        <translation>Halbe Zeit</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>Kleiner</translation>
    </message>
    <message>
        <source>Twice the time</source>
        <translation>Doppelte Zeit</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alles</translation>
    </message>
    <message>
        <source>All that was collected</source>
        <translation>Alles, was gesammelt wurde</translation>
    </message>
    <message>
        <source>Cursor A</source>
        <translation>Cursor A</translation>
    </message>
    <message>
        <source>Show cursor A; Left and Right move it</source>
        <translation>Cursor A zeigen; Pfeil links und rechts bewegen ihn</translation>
    </message>
    <message>
        <source>Cursor B</source>
        <translation>Cursor B</translation>
    </message>
    <message>
        <source>Show cursor B; Left and Right move it</source>
        <translation>Cursor B zeigen; Pfeil links und rechts bewegen ihn</translation>
    </message>
    <message>
        <source>No cursors</source>
        <translation>Keine Cursor</translation>
    </message>
    <message>
        <source>Hide both cursors</source>
        <translation>Beide Cursor ausblenden</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>Put a note at a time</source>
        <translation>Notiz an einen Zeitpunkt setzen</translation>
    </message>
    <message>
        <source>Add pane</source>
        <translation>Feld dazu</translation>
    </message>
    <message>
        <source>One more pane, with scales of its own</source>
        <translation>Ein weiteres Feld mit eigenen Achsen</translation>
    </message>
    <message>
        <source>Remove pane</source>
        <translation>Feld weg</translation>
    </message>
    <message>
        <source>Its traces go to the pane above</source>
        <translation>Seine Kurven gehen ins Feld darüber</translation>
    </message>
    <message>
        <source>Automatic left scale</source>
        <translation>Linke Achse automatisch</translation>
    </message>
    <message>
        <source>The scale fits to what is seen</source>
        <translation>Die Achse passt sich dem Sichtbaren an</translation>
    </message>
    <message>
        <source>Automatic right scale</source>
        <translation>Rechte Achse automatisch</translation>
    </message>
    <message>
        <source>Record...</source>
        <translation>Aufzeichnen...</translation>
    </message>
    <message>
        <source>Write samples to a file until this is switched off</source>
        <translation>Messwerte in eine Datei schreiben, bis dies ausgeschaltet wird</translation>
    </message>
    <message>
        <source>Save CSV...</source>
        <translation>CSV speichern...</translation>
    </message>
    <message>
        <source>What is between the cursors, or what is seen</source>
        <translation>Was zwischen den Cursorn liegt, sonst das Sichtbare</translation>
    </message>
    <message>
        <source>Save picture...</source>
        <translation>Bild speichern...</translation>
    </message>
    <message>
        <source>As PNG or SVG</source>
        <translation>Als PNG oder SVG</translation>
    </message>
</context>
<context>
    <name>cnet::view::TrendPage</name>
    <message numerus="yes">
        <source>No more than %n traces fit.</source>
        <translation>
            <numerusform>Mehr als %n Kurve passt nicht.</numerusform>
            <numerusform>Mehr als %n Kurven passen nicht.</numerusform>
        </translation>
    </message>
    <message>
        <source>Remove some of them first.</source>
        <translation>Entfernen Sie zuerst einige.</translation>
    </message>
    <message>
        <source>Choose numbers and bits of the values that are watched.</source>
        <translation>Wählen Sie Zahlen und Bits aus den beobachteten Werten.</translation>
    </message>
    <message>
        <source>A: %1</source>
        <translation>A: %1</translation>
    </message>
    <message>
        <source>B: %1</source>
        <translation>B: %1</translation>
    </message>
    <message>
        <source>B - A: %1 s</source>
        <translation>B - A: %1 s</translation>
    </message>
    <message>
        <source>note</source>
        <translation>Notiz</translation>
    </message>
    <message numerus="yes">
        <source>There are %n notes already.</source>
        <translation>
            <numerusform>Es gibt schon %n Notiz.</numerusform>
            <numerusform>Es gibt schon %n Notizen.</numerusform>
        </translation>
    </message>
    <message>
        <source>Save samples</source>
        <translation>Messwerte speichern</translation>
    </message>
    <message>
        <source>CSV (*.csv)</source>
        <translation>CSV (*.csv)</translation>
    </message>
    <message>
        <source>Save picture</source>
        <translation>Bild speichern</translation>
    </message>
    <message>
        <source>PNG (*.png)</source>
        <translation>PNG (*.png)</translation>
    </message>
    <message>
        <source>SVG (*.svg)</source>
        <translation>SVG (*.svg)</translation>
    </message>
    <message>
        <source>Record samples</source>
        <translation>Messwerte aufzeichnen</translation>
    </message>
    <message>
        <source>Make room on the disk, or record to another one.</source>
        <translation>Schaffen Sie Platz auf der Platte, oder zeichnen Sie auf eine andere auf.</translation>
    </message>
    <message>
        <source>%1 was not written: %2.</source>
        <translation>%1 wurde nicht geschrieben: %2.</translation>
    </message>
    <message>
        <source>Choose another folder, or make room on the disk.</source>
        <translation>Wählen Sie einen anderen Ordner, oder schaffen Sie Platz auf der Platte.</translation>
    </message>
    <message>
        <source>%1 was written.</source>
        <translation>%1 wurde geschrieben.</translation>
    </message>
    <message>
        <source>Choose another time with both cursors, or by what is seen.</source>
        <translation>Wählen Sie mit beiden Cursorn oder durch das Sichtbare eine andere Zeit.</translation>
    </message>
    <message>
        <source>Trend</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>The picture could not be drawn.</source>
        <translation>Das Bild ließ sich nicht zeichnen.</translation>
    </message>
    <message>
        <source>Make the window smaller.</source>
        <translation>Machen Sie das Fenster kleiner.</translation>
    </message>
    <message>
        <source>Choose another file.</source>
        <translation>Wählen Sie eine andere Datei.</translation>
    </message>
    <message>
        <source>Recording to %1.</source>
        <translation>Aufzeichnung nach %1.</translation>
    </message>
    <message>
        <source>Recorded to %1.</source>
        <translation>Aufgezeichnet nach %1.</translation>
    </message>
    <message>
        <source> MB</source>
        <translation> MB</translation>
    </message>
    <message>
        <source>Most that a recording takes</source>
        <translation>Größe, die eine Aufzeichnung höchstens hat</translation>
    </message>
    <message>
        <source>Of a recording that takes more, the oldest part goes</source>
        <translation>Wird eine Aufzeichnung größer, fällt der älteste Teil weg</translation>
    </message>
    <message>
        <source>Drag tags from Values here, or press T there.</source>
        <translation>Variablen von der Seite Werte hierher ziehen, oder dort T drücken.</translation>
    </message>
    <message>
        <source>Values at the cursors</source>
        <translation>Werte an den Cursorn</translation>
    </message>
    <message>
        <source>&amp;Trend</source>
        <translation>Verlau&amp;f</translation>
    </message>
</context>
<context>
    <name>cnet::view::TrendPlot</name>
    <message>
        <source>Trend</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Arrow keys move the picture or the active cursor</source>
        <translation>Pfeiltasten bewegen das Bild oder den aktiven Cursor</translation>
    </message>
</context>
<context>
    <name>cnet::view::TrendRecord</name>
    <message>
        <source>%1 is there, and is no recording.</source>
        <translation>%1 gibt es schon, und es ist keine Aufzeichnung.</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2.</source>
        <translation>%1 lässt sich nicht schreiben: %2.</translation>
    </message>
    <message>
        <source>The recording to %1 has ended: %2.</source>
        <translation>Die Aufzeichnung nach %1 ist beendet: %2.</translation>
    </message>
    <message>
        <source>Another window is recording to %1 (%2). If it is gone, remove %3.</source>
        <translation>Ein anderes Fenster zeichnet nach %1 auf (%2). Gibt es das nicht mehr, %3 entfernen.</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValueDelegate</name>
    <message>
        <source>New value of %1</source>
        <translation>Neuer Wert von %1</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValueForm</name>
    <message>
        <source>Set a value</source>
        <translation>Wert setzen</translation>
    </message>
    <message>
        <source>S&amp;et</source>
        <translation>Set&amp;zen</translation>
    </message>
    <message>
        <source>Register of the value</source>
        <translation>Register des Werts</translation>
    </message>
    <message>
        <source>Address of the value</source>
        <translation>Adresse des Werts</translation>
    </message>
    <message>
        <source>A number; of a bit, its word and bit as 3.5</source>
        <translation>Eine Zahl; bei einem Bit Wort und Bit als 3.5</translation>
    </message>
    <message>
        <source>12, -3 or 0x1234; several with commas</source>
        <translation>12, -3 oder 0x1234; mehrere mit Komma</translation>
    </message>
    <message>
        <source>The value now</source>
        <translation>Der Wert jetzt</translation>
    </message>
    <message>
        <source>What became of setting the value</source>
        <translation>Was aus dem Setzen wurde</translation>
    </message>
    <message>
        <source>A&amp;ddress:</source>
        <translation>Adr&amp;esse:</translation>
    </message>
    <message>
        <source>Value to set</source>
        <translation>Zu setzender Wert</translation>
    </message>
    <message>
        <source>is %1</source>
        <translation>ist %1</translation>
    </message>
    <message>
        <source>no such address</source>
        <translation>keine solche Adresse</translation>
    </message>
    <message>
        <source>%1 is set.</source>
        <translation>%1 ist gesetzt.</translation>
    </message>
    <message>
        <source>Val&amp;ue:</source>
        <translation>Vor&amp;gabe:</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValueWriter</name>
    <message>
        <source>%1; it holds %2</source>
        <translation>%1; in der SPS steht %2</translation>
    </message>
    <message>
        <source>taken, not read back</source>
        <translation>angenommen, nicht zurückgelesen</translation>
    </message>
    <message>
        <source>taken, reads %1</source>
        <translation>angenommen, liest %1</translation>
    </message>
    <message>
        <source>not sent: %1</source>
        <translation>nicht gesendet: %1</translation>
    </message>
    <message>
        <source>confirmed, but the PLC holds %1</source>
        <translation>bestätigt, aber die SPS hat %1</translation>
    </message>
    <message>
        <source>not confirmed</source>
        <translation>nicht bestätigt</translation>
    </message>
    <message>
        <source>no answer, the PLC may have taken it</source>
        <translation>keine Antwort, die SPS hat es vielleicht angenommen</translation>
    </message>
    <message>
        <source>not confirmed: %1</source>
        <translation>nicht bestätigt: %1</translation>
    </message>
    <message>
        <source>waiting for the PLC: %1</source>
        <translation>wartet auf die SPS: %1</translation>
    </message>
    <message>
        <source>not confirmed: the connection has ended</source>
        <translation>nicht bestätigt: die Verbindung ist beendet</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValuesModel</name>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Quality</source>
        <translation>Qualität</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Schreiben</translation>
    </message>
    <message>
        <source>Raw words</source>
        <translation>Rohwörter</translation>
    </message>
    <message>
        <source>Last change</source>
        <translation>Geändert</translation>
    </message>
    <message>
        <source>Age</source>
        <translation>Alter</translation>
    </message>
    <message>
        <source>Min</source>
        <translation>Min</translation>
    </message>
    <message>
        <source>Max</source>
        <translation>Max</translation>
    </message>
    <message>
        <source>Description</source>
        <translation>Beschreibung</translation>
    </message>
    <message>
        <source>%1, group %2</source>
        <translation>%1, Gruppe %2</translation>
    </message>
    <message>
        <source>F2 or a double click changes it, Enter writes</source>
        <translation>F2 oder Doppelklick ändert ihn, die Eingabetaste schreibt</translation>
    </message>
    <message>
        <source>can only be read</source>
        <translation>nur lesbar</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValuesPage</name>
    <message>
        <source>&amp;Values</source>
        <translation>&amp;Werte</translation>
    </message>
    <message>
        <source>%1 is in the table, and the filter hides it</source>
        <translation>%1 ist in der Tabelle, der Filter blendet es aus</translation>
    </message>
    <message>
        <source>%1 can only be read</source>
        <translation>%1 ist nur lesbar</translation>
    </message>
    <message>
        <source>Values: %1</source>
        <translation>Werte: %1</translation>
    </message>
    <message>
        <source>Values: %1 of %2</source>
        <translation>Werte: %1 von %2</translation>
    </message>
    <message>
        <source>%1 is in the table now, and the filter hides it</source>
        <translation>%1 ist jetzt in der Tabelle, der Filter blendet es aus</translation>
    </message>
    <message>
        <source>These tags have more values than the table takes: %1, and it takes %2</source>
        <translation>Diese Variablen haben mehr Werte, als die Tabelle fasst: %1, sie fasst %2</translation>
    </message>
    <message>
        <source>Divide the file.</source>
        <translation>Teilen Sie die Datei auf.</translation>
    </message>
    <message>
        <source>%1 was not opened, the table is as it was. Mistakes: %2</source>
        <translation>%1 wurde nicht geöffnet, die Tabelle ist unverändert. Fehler: %2</translation>
    </message>
    <message>
        <source>Tags read from %1: %2</source>
        <translation>Variablen aus %1 gelesen: %2</translation>
    </message>
    <message>
        <source>Tags saved in %1: %2</source>
        <translation>Variablen in %1 gespeichert: %2</translation>
    </message>
    <message>
        <source>%1. Those without a name got one: %2</source>
        <translation>%1. Ohne Namen waren und bekamen einen: %2</translation>
    </message>
    <message>
        <source>Open tags</source>
        <translation>Variablen öffnen</translation>
    </message>
    <message>
        <source>Tag files (*.csv);;All files (*)</source>
        <translation>Variablendateien (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Save tags</source>
        <translation>Variablen speichern</translation>
    </message>
    <message>
        <source>Fi&amp;lter:</source>
        <translation>Fil&amp;ter:</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Words of a name, group, description or quality</source>
        <translation>Wörter aus Name, Gruppe, Beschreibung oder Qualität</translation>
    </message>
    <message>
        <source>Ta&amp;gs</source>
        <translation>Varia&amp;blen</translation>
    </message>
    <message>
        <source>What can be done with the tags</source>
        <translation>Was sich mit den Variablen tun lässt</translation>
    </message>
    <message>
        <source>F2 writes, T shows in the trend, Insert adds, Delete removes; more under Tags</source>
        <translation>F2 schreibt, T zeigt im Verlauf, Einfg fügt hinzu, Entf entfernt; mehr unter Variablen</translation>
    </message>
    <message>
        <source>Change the &amp;value</source>
        <translation>&amp;Wert ändern</translation>
    </message>
    <message>
        <source>Show in the &amp;trend</source>
        <translation>Im Verlauf &amp;zeigen</translation>
    </message>
    <message>
        <source>&amp;Copy rows</source>
        <translation>Zeilen ko&amp;pieren</translation>
    </message>
    <message>
        <source>&amp;Remove from the table</source>
        <translation>Aus der Tabelle &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>Rüc&amp;kgängig</translation>
    </message>
    <message>
        <source>Re&amp;do</source>
        <translation>Wiederh&amp;olen</translation>
    </message>
    <message>
        <source>&amp;Open tags...</source>
        <translation>&amp;Variablen öffnen...</translation>
    </message>
    <message>
        <source>&amp;Save tags</source>
        <translation>Variablen &amp;speichern</translation>
    </message>
    <message>
        <source>Save tags &amp;as...</source>
        <translation>Variablen speichern &amp;unter...</translation>
    </message>
    <message>
        <source>Reset &amp;min and max</source>
        <translation>&amp;Min und Max zurücksetzen</translation>
    </message>
    <message>
        <source>Sort as &amp;listed</source>
        <translation>Wie ge&amp;listet sortieren</translation>
    </message>
    <message>
        <source>&amp;Filter</source>
        <translation>&amp;Filter</translation>
    </message>
    <message>
        <source>Add a ta&amp;g</source>
        <translation>Variable &amp;hinzufügen</translation>
    </message>
    <message>
        <source>The tags of the project are wrong, so none is shown; the project keeps them. Mistakes: %1</source>
        <translation>Die Variablen des Projekts sind falsch, deshalb wird keine gezeigt; das Projekt behält sie. Fehler: %1</translation>
    </message>
    <message>
        <source>The page of values lists them.</source>
        <translation>Die Seite der Werte zählt sie auf.</translation>
    </message>
    <message>
        <source>The tags of the project are no text, so none is shown; the project keeps them.</source>
        <translation>Die Tags des Projekts sind kein Text, daher wird keiner gezeigt; das Projekt behält sie.</translation>
    </message>
    <message>
        <source>Open the project in an editor, or add tags here in their place.</source>
        <translation>Das Projekt in einem Editor öffnen oder hier andere Tags hinzufügen.</translation>
    </message>
</context>
<context>
    <name>cnet::view::ValuesView</name>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>The filter or the group hides all values.</source>
        <translation>Der Filter oder die Gruppe blendet alle Werte aus.</translation>
    </message>
    <message>
        <source>Nothing to show yet. Type an address into Add above, like D_W:100 or D_W:112@u16*0.1-40, or open a tag file: Tags, Open tags.</source>
        <translation>Noch nichts zu zeigen. Geben Sie oben unter Hinzufügen eine Adresse ein wie D_W:100 oder D_W:112@u16*0.1-40, oder öffnen Sie eine Variablendatei: Variablen, Variablen öffnen.</translation>
    </message>
</context>
<context>
    <name>cnet::view::WindowPages</name>
    <message>
        <source>Pages</source>
        <translation>Seiten</translation>
    </message>
    <message>
        <source>Drawn in the trend: %1</source>
        <translation>Im Verlauf gezeichnet: %1</translation>
    </message>
    <message>
        <source>The values of the press line are put away; it is still in the Help menu</source>
        <translation>Die Werte der Pressenlinie sind weggelegt; sie ist weiter im Menü Hilfe</translation>
    </message>
</context>
</TS>
