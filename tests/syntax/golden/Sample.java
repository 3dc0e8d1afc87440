/*
 * The timetable of the harbour ferries.
 *
 * Reads departures, answers which one is next, and prints the day's board. The file shows most of
 * what the language has in everyday use; it needs nothing but the standard library.
 */
package example.harbour.ferry;

import static java.util.stream.Collectors.groupingBy;
import static java.util.stream.Collectors.toMap;

import java.io.BufferedReader;
import java.io.IOException;
import java.io.Serializable;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.time.Duration;
import java.time.LocalTime;
import java.util.*;
import java.util.concurrent.*;
import java.util.concurrent.atomic.AtomicLong;
import java.util.function.Function;
import java.util.function.Predicate;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import java.util.stream.Stream;

/**
 * All departures of one day, in the order of their times.
 *
 * <p>A line of the file looks like {@code 07:40;Grey Island;2;"slow, with cars"}. See
 * <a href="https://harbour.example/ferry#format">the format</a>.
 *
 * @param <D> what a departure is
 * @see Departure
 * @since 2.1
 */
@SuppressWarnings({"unused", "rawtypes"})
public final class Sample<D extends Comparable<? super D>> implements Iterable<D>, Serializable {

	private static final long serialVersionUID = 0x5EED_F00DL;
	private static final int LIMIT = 1_000, MASK = 0b1010_0101, MODE = 0755;
	private static final double KNOT = 1.852e3 / 3600.0, EPSILON = 1e-9, HALF = .5;
	private static final float FACTOR = 1.5f;
	private static final char QUOTE = '"', APOSTROPHE = '\'', NEWLINE = '\n', EURO = '\u20AC';
	private static final String ADDRESS = "https://harbour.example/board"; // "//" in a string
	private static final String ODD = "a \"quoted\" word, /* no comment */ and a backslash \\";
	private static final Pattern LINE = Pattern.compile("(\\d{2}:\\d{2});([^;]+);(\\d+)(?:;\"(.*)\")?");

	private static final String HELP = """
		Usage: board FILE [HARBOUR]

		  FILE     one departure on each line
		  HARBOUR  "Grey Island" if it is not given
		""";

	static final Map<String, List<Map.Entry<LocalTime, ? extends Number>>> DELAYS = new HashMap<>();

	static {
		DELAYS.put("Grey Island", List.of(Map.entry(LocalTime.NOON, 3)));
		DELAYS.computeIfAbsent("Cape", key -> new ArrayList<>()).clear();
	}

	private final NavigableSet<D> departures = new TreeSet<>();
	private final transient AtomicLong questions = new AtomicLong();
	private volatile boolean closed;
	int[][] grid = {{1, 2}, {3, 4, 5}}, other[] = null;

	/** Where a ferry goes. */
	enum Harbour {
		GREY_ISLAND("Grey Island", 14.5),
		CAPE("Cape", 31) {
			@Override
			Duration crossing(double knots) {
				return super.crossing(knots).plusMinutes(10);
			}
		},
		MAINLAND("Mainland", 0);

		private final String label;
		private final double miles;

		Harbour(String label, double miles) {
			this.label = label;
			this.miles = miles;
		}

		Duration crossing(double knots) {
			return Duration.ofMinutes(Math.round(60 * miles / knots));
		}

		static Optional<Harbour> named(String label) {
			for (Harbour harbour : values()) {
				if (harbour.label.equalsIgnoreCase(label)) return Optional.of(harbour);
			}
			return Optional.empty();
		}
	}

	/** One ferry that leaves. */
	record Departure(LocalTime time, Harbour to, int pier, String note) implements Comparable<Departure> {
		static int made = 0;

		Departure {
			Objects.requireNonNull(time, "time");
			if (pier < 1 || pier > 12) {
				throw new IllegalArgumentException("no pier " + pier);
			}
		}

		Departure(LocalTime time, Harbour to) {
			this(time, to, 1, "");
		}

		@Override public int compareTo(Departure that) {
			return Comparator.comparing(Departure::time).thenComparing(Departure::pier).compare(this, that);
		}

		boolean isBefore(LocalTime moment) { return time.isBefore(moment); }
	}

	sealed interface Event permits Delay, Cancellation {
		Departure departure();

		default String describe() {
			return switch (this) {
				case Delay delay when delay.minutes() > 60 -> "more than an hour late";
				case Delay(Departure departure, int minutes) -> minutes + " min late";
				case Cancellation ignored -> "does not sail";
			};
		}
	}

	record Delay(Departure departure, int minutes) implements Event {}

	record Cancellation(Departure departure) implements Event {}

	@interface Audited {
		String by() default "";
		int[] levels() default {1, 2};
	}

	@FunctionalInterface
	interface Clock<T extends Comparable<T>> {
		T now() throws InterruptedException;
	}

	static abstract class Reader<T> implements AutoCloseable {
		protected abstract T next() throws IOException;

		native void tune(long handle);

		@Override
		public void close() {
			// nothing is held
		}
	}

	public Sample() {
		this(Collections.emptyList());
	}

	public Sample(Collection<? extends D> departures) {
		super();
		this.departures.addAll(departures);
	}

	@Override
	public Iterator<D> iterator() {
		return Collections.unmodifiableNavigableSet(departures).iterator();
	}

	/**
	 * Reads a file. Lines that are no departures are left out; {@code if (line == null) return;}
	 * is not code here.
	 *
	 * @throws UncheckedIOException when the file cannot be read
	 */
	@Audited(by = "desk", levels = {3})
	public static Sample<Departure> read(Path path) {
		var found = new ArrayList<Departure>();
		try (BufferedReader reader = Files.newBufferedReader(path, StandardCharsets.UTF_8)) {
			String line;
			while ((line = reader.readLine()) != null) {
				parse(line).ifPresent(found::add);
				if (found.size() >= LIMIT) break;
			}
		} catch (IOException | SecurityException e) {
			throw new UncheckedIOException("cannot read " + path, new IOException(e));
		} finally {
			System.err.printf("%d departures, %.1f%% of the limit%n", found.size(), 100.0 * found.size() / LIMIT);
		}
		return new Sample<>(found);
	}

	private static Optional<Departure> parse(final String line) {
		Matcher matcher = LINE.matcher(line.strip());
		if (!matcher.matches()) {
			return Optional.empty();
		} else if (matcher.group(4) == null) {
			return Harbour.named(matcher.group(2)).map(to -> new Departure(LocalTime.parse(matcher.group(1)), to));
		}
		return Harbour.named(matcher.group(2)).map(to -> new Departure(
			LocalTime.parse(matcher.group(1)), to, Integer.parseInt(matcher.group(3)), matcher.group(4)));
	}

	public Optional<D> next(Predicate<? super D> wanted) {
		questions.incrementAndGet();
		return departures.stream().filter(wanted).findFirst();
	}

	<K, V extends Comparable<V>> Map<K, V> index(Function<? super D, K> key, Function<? super D, V> value) {
		return departures.stream().collect(toMap(key, value, (a, b) -> a.compareTo(b) < 0 ? a : b, TreeMap::new));
	}

	@SafeVarargs
	final int countAll(Predicate<D>... filters) {
		int count = 0;
		outer:
		for (D departure : departures) {
			for (Predicate<D> filter : filters) {
				if (!filter.test(departure)) continue outer;
			}
			count++;
		}
		return count;
	}

	protected synchronized void shuffle(
			long seed,
			Map<String, List<Integer>> weights)
			throws InterruptedException, TimeoutException {
		Random random = new Random(seed ^ 0xDEADBEEFL);
		do {
			wait(10L);
		} while (random.nextInt(100) > 3 && !closed);
		synchronized (departures) {
			notifyAll();
		}
		assert weights != null : "no weights";
	}

	static long checksum(byte[] bytes) {
		long sum = 0;
		for (int i = 0, n = bytes.length; i < n; i++) {
			sum = (sum << 5 | sum >>> 59) ^ bytes[i] & 0xFF;
		}
		return ~sum;
	}

	private Object[] sorted(Object[] values, Comparator<Object> order) {
		Object[] copy = values.clone();
		Arrays.sort(copy, order);
		return copy;
	}

	static String board(Sample<Departure> sample) throws ExecutionException, InterruptedException {
		ExecutorService pool = Executors.newVirtualThreadPerTaskExecutor();
		try {
			List<Future<String>> lines = new ArrayList<>();
			for (Departure departure : sample) {
				lines.add(pool.submit(() -> {
					Thread.sleep(Duration.ofMillis(1));
					return String.format("%s  %-12s  pier %2d%s", departure.time(), departure.to().label,
						departure.pier(), departure.note().isEmpty() ? "" : "  (" + departure.note() + ')');
				}));
			}
			StringBuilder board = new StringBuilder();
			for (Future<String> line : lines) board.append(line.get()).append(NEWLINE);
			return board.toString();
		} finally {
			pool.shutdown();
		}
	}

	/* Switched off until the new pier is built:

	static int pierOf(Departure departure) {
		return departure.pier() % 12 + 1; // "pier"
	}

	*/

	private static String greeting(int hour) {
		switch (hour) {
			case 5: case 6: case 7:
				return "Good morning";
			case 22:
			default:
				break;
		}
		String word = switch (hour / 6) {
			case 0 -> "night";
			case 1, 2 -> {
				int left = 18 - hour;
				yield left > 1 ? "day, for " + left + " hours" : "evening";
			}
			default -> throw new IllegalStateException();
		};
		return "Good " + word;
	}

	public static void main(String[] args) throws Exception {
		if (args.length == 0) {
			System.out.print(HELP);
			System.exit(2);
		}
		Sample<Departure> sample = read(Path.of(args[0]));
		Runnable hook = () -> System.out.println("closed");
		Runtime.getRuntime().addShutdownHook(new Thread(hook, "closer"));
		Object last = new Object() {
			@Override
			public String toString() {
				return greeting(LocalTime.now().getHour());
			}
		};
		Map<Harbour, List<Departure>> byHarbour = Stream.of(sample.departures.toArray(Departure[]::new))
			.collect(groupingBy(Departure::to, () -> new EnumMap<>(Harbour.class), java.util.stream.Collectors.toList()));
		byHarbour.forEach((to, list) -> System.out.println(to + ": " + list.size()));
		if (last instanceof String text && !text.isBlank()) return;
		System.out.println(board(sample));
	}
}
