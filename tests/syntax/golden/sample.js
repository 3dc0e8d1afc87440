#!/usr/bin/env node
"use strict";

/**
 * The tide table: reads the measurements of a harbour, predicts the next high waters and draws
 * them into a page.
 *
 * A record looks like `{ time: "2026-11-21T06:12Z", height: 4.31 }`. See
 * https://harbour.example/api for the rest.
 *
 * @module tides
 */

import { readFile, writeFile } from "node:fs/promises";
import path from 'node:path';
import * as stats from "./stats.mjs";
import defaults, { UNITS as units } from './defaults.js';

export * from "./model.js";
export { default as Chart } from './chart.js';

const VERSION = "2.4.0"; // keep in step with package.json
const LUNAR_DAY = 24 * 3600 + 50 * 60 + 28.32; // seconds
const MASKS = [0xFF, 0b1010_0101, 0o755, 1e-3, .5, 10n ** 18n, 0xdeadbeefn];
const NAMES = { 'grey-island': "Grey Island", cape: 'Cape \'Farewell\'', "o": "O\"Neill\\" };

/* Patterns: a slash in a class, an escaped slash, a quote in a class. */
const ISO_DATE = /^(\d{4})-(\d{2})-(\d{2})T(\d{2}):(\d{2})(?:\.\d+)?Z$/u;
const PATH = /[^/]+\/(?<file>[\w.-]+)$/i;
const ESCAPES = /\\([nrt"'])/g;
const SPACES = /\s{2,}/gm, NOT_DIVISION = 10 / 2 / 5;

let cache = new Map(), hits = 0, misses = 0;
var legacy = typeof window === "undefined" ? globalThis : window;

// ---------------------------------------------------------------------------- plain functions

function* range(from, to, step = 1) {
	for (let i = from; i < to; i += step) {
		yield i;
	}
}

export function parse(line, index = 0) {
	const [time, height, ...flags] = line.split(";").map((field) => field.trim());
	if (!ISO_DATE.test(time)) {
		throw new SyntaxError(`line ${index + 1}: "${time}" is no time, it's nonsense`);
	}
	return { time: Date.parse(time), height: Number.parseFloat(height), flags: new Set(flags) };
}

export default async function load(name, { encoding = "utf8", limit = Infinity } = {}) {
	if (cache.has(name)) {
		hits++;
		return cache.get(name);
	}
	misses += 1;
	const text = await readFile(path.join(defaults.folder, `${name}.csv`), { encoding });
	const lines = text.split(/\r\n|\r|\n/).filter(Boolean);
	const records = lines.slice(0, limit).map(parse);
	cache.set(name, records);
	return records;
}

function median(values) { return stats.quantile(values, 0.5) }

const identity = value => value;
const square = (x) => x * x;
const compose = (...functions) => (value) => functions.reduceRight((v, f) => f(v), value);

const fetchRemote = async (station, { signal, retries = 3 } = {}) => {
	const url = new URL(`/stations/${encodeURIComponent(station)}?v=${VERSION}`, 'https://harbour.example//api');
	for (;;) {
		const response = await fetch(url, { signal, headers: { "Accept": "application/json, */*" } });
		if (response.ok) return response.json();
		if (--retries < 0) throw new Error(`${response.status} ${response.statusText}`);
		await new Promise((resolve) => setTimeout(resolve, 250));
	}
};

export const formatHeight = function (metres, unit = 'm') {
	switch (unit) {
	case 'm':
		return `${metres.toFixed(2)} m`;
	case "ft": {
		const feet = metres / 0.3048;
		return `${Math.floor(feet)}′ ${Math.round((feet % 1) * 12)}″`;
	}
	default:
		return metres?.toString() ?? "–";
	}
};

const withManyParameters = (
	first,
	second = [1, 2, 3],
	{ third, fourth: [fifth] = [] } = {},
) => {
	return first + second.length + (third || fifth);
};

// if (never) { this is not a function, and neither is while (true) { in a comment }

// ---------------------------------------------------------------------------- classes

class Event2 extends Event {
	constructor(type, detail) {
		super(type, { bubbles: true });
		this.detail = detail;
	}
}

export class Harbour extends EventTarget {
	static #count = 0;
	static registry = new WeakMap();

	#name;
	#records = [];
	unit = "m";

	static {
		Harbour.registry.set(this, []);
	}

	constructor(name, records = []) {
		super();
		this.#name = name;
		this.#records = records;
		Harbour.#count++;
	}

	static async open(name) {
		return new Harbour(name, await load(name));
	}

	get name() { return this.#name; }
	set name(value) {
		if (value === this.#name) return;
		this.#name = String(value);
		this.dispatchEvent(new Event2("rename", { value }));
	}

	get [Symbol.toStringTag]() {
		return 'Harbour';
	}

	*[Symbol.iterator]() {
		yield* this.#records;
	}

	async *follow(interval = 60_000) {
		while (true) {
			yield await fetchRemote(this.#name);
			await new Promise((done) => setTimeout(done, interval));
		}
	}

	#between(start, end) {
		return this.#records.filter(({ time }) => time >= start && time < end);
	}

	highest(day = new Date()) {
		const start = Date.UTC(day.getUTCFullYear(), day.getUTCMonth(), day.getUTCDate());
		const records = this.#between(start, start + 86_400_000);
		if (records.length === 0) {
			return null;
		} else if (records.length === 1) {
			return records[0];
		}
		return records.reduce((best, record) => (record.height > best.height ? record : best));
	}

	onClick = (event) => {
		event.preventDefault();
		this.highest();
	};

	'quoted name'() {
		return delete this.unit;
	}

	static count() { return Harbour.#count }
}

// ---------------------------------------------------------------------------- objects

const model = {
	version: VERSION,
	$root: null,
	_private: void 0,
	label: "a // b is no comment", note: 'neither is /* this */ one',

	describe() {
		return `${this.version} of ${NAMES["cape"]}`;
	},

	async refresh(force = false) {
		if (!force && hits > misses) return;
		try {
			await this.describe();
		} catch ({ message }) {
			console.warn(message);
		} finally {
			hits = misses = 0;
		}
	},

	compare: function (a, b) {
		return a.time - b.time || b.height - a.height;
	},

	scale: (height) => height * 100,

	get size() {
		return cache.size;
	},
};

legacy.Tide = function Tide(height) {
	if (!(this instanceof Tide)) {
		return new Tide(height);
	}
	this.height = height;
};

legacy.Tide.prototype.toString = function () {
	return '[Tide ' + this.height + ']';
};

Object.defineProperty(legacy.Tide.prototype, 'isHigh', {
	enumerable: true,
	get() { return this.height >= 4; },
});

// ---------------------------------------------------------------------------- the page

const page = (harbour) => `<!DOCTYPE html>
<html lang="en">
<title>${harbour.name}</title>
<p class="tide ${harbour.highest() ? "high" : 'low'}">
	If this is all you see, the table for today is not in yet.
</p>
<ul>${[...harbour].map((r) => `<li>${formatHeight(r.height)}</li>`).join("")}</ul>
<script>/* nothing */</script>
</html>`;

function draw(canvas, records) {
	const context = canvas.getContext("2d");
	context.clearRect(0, 0, canvas.width, canvas.height);
	context.strokeStyle = '#3867c2';
	context.beginPath();
	records.forEach(({ height }, i) => {
		const x = i * 2, y = canvas.height - height * 10;
		i === 0 ? context.moveTo(x, y) : context.lineTo(x, y);
	});
	context.stroke();
}

if (typeof document !== 'undefined') {
	document.addEventListener("DOMContentLoaded", async () => {
		const $ = (selector) => document.querySelector(selector);
		const harbour = await Harbour.open(location.hash.slice(1) || 'grey-island');

		draw($("canvas"), [...harbour]);
		$('#name').textContent = harbour.name;
		$('#save').addEventListener('click', function onSave(event) {
			localStorage.setItem("harbour", JSON.stringify({ name: harbour.name, at: Date.now() }));
			event.currentTarget.classList.add('is-saved');
		});

		const observer = new IntersectionObserver((entries) => {
			for (const entry of entries) {
				if (entry.isIntersecting) entry.target.hidden = false;
			}
		}, { threshold: 0.25 });
		document.querySelectorAll('section[hidden]').forEach((section) => observer.observe(section));
	});
}

outer: for (const i of range(0, 10)) {
	for (const j of range(0, 10, 3)) {
		if (i * j > 20) break outer;
		if ((i ^ j) & 1) continue;
		cache.set(`${i}:${j}`, [i ** j, i >>> 1, ~j, !i, i ?? j]);
	}
}

do {
	hits--;
} while (hits > 0);

/* A block over several lines, with code in it that is switched off:

	const harbour = "not seen"; // nor this
	for (;;) { }

   and the end. */

with_hold: {
	debugger;
}

const translations = new Proxy({}, {
	get(target, key, receiver) {
		return Reflect.has(target, key) ? Reflect.get(target, key, receiver) : `⟨${String(key)}⟩`;
	},
});

export const tagged = String.raw`C:\harbour\new`;
export const multi = "a string that goes on \
over a line end";

// A last word without a line end after it:
model.refresh(true).then(() => process.exit(0), (error) => { console.error(error); process.exitCode = 1; })
