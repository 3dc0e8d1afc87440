//
//  Logbook.m
//  Keeps the log of a boat: entries with a time, a place and a remark.
//
//  The file shows what the language has in everyday use: classes, categories, protocols, blocks,
//  literals, properties and the C beneath them. See https://harbour.example/logbook.
//

#import <Foundation/Foundation.h>
#import "Logbook.h"
#include <math.h>
#include <stdint.h>

#if defined(__OBJC__) && !defined(LOGBOOK_QUIET)
#	define LogNote(format, ...) NSLog(@"%s:%d " format, __func__, __LINE__, ##__VA_ARGS__)
#else
#	define LogNote(...) do { } while (0) /* nothing is said */
#endif

#ifndef MAX_ENTRIES
#define MAX_ENTRIES 4096
#endif

#pragma mark Constants and types

NSString *const LogbookDidChangeNotification = @"LogbookDidChangeNotification";
NSErrorDomain const LogbookErrorDomain = @"example.harbour.logbook";

static const double kKnot = 1852.0 / 3600.0;
static const NSUInteger kMask = 0xFF00u, kBits = 0b1010;
static const float kHalf = .5f, kTiny = 1.5e-3f;
static char const kQuote = '"', kApostrophe = '\'', kNewline = '\n';
static NSString *const kOdd = @"a \"quoted\" word, // no comment, /* nor this */ and \\";

typedef NS_ENUM(NSInteger, LogbookKind) {
	LogbookKindDeparture = 1,
	LogbookKindArrival,
	LogbookKindRemark = 100,
};

typedef NS_OPTIONS(NSUInteger, LogbookFlags) {
	LogbookFlagNone = 0,
	LogbookFlagNight = 1 << 0,
	LogbookFlagFog = 1 << 1,
};

typedef struct {
	double latitude;
	double longitude;
} LogbookPlace;

typedef void (^LogbookHandler)(NSArray<NSDictionary *> *_Nullable entries, NSError *_Nullable error);

#pragma mark - C functions

static inline double radians(double degrees)
{
	return degrees * M_PI / 180.0;
}

static double DistanceBetween(LogbookPlace a, LogbookPlace b) {
	double u = sin(radians(b.latitude - a.latitude) / 2), v = sin(radians(b.longitude - a.longitude) / 2);
	double h = u * u + cos(radians(a.latitude)) * cos(radians(b.latitude)) * v * v;
	return 2.0 * 6371e3 * asin(fmin(1.0, sqrt(h)));
}

NSString *LogbookStringFromPlace(LogbookPlace place)
{
	char buffer[64];
	snprintf(buffer, sizeof buffer, "%08.4f%c %09.4f%c", fabs(place.latitude), place.latitude < 0 ? 'S' : 'N',
		fabs(place.longitude), place.longitude < 0 ? 'W' : 'E');
	return [NSString stringWithUTF8String:buffer];
}

uint32_t
LogbookChecksum(const uint8_t *bytes, size_t length)
{
	uint32_t sum = 0x811C9DC5u;
	while (length-- > 0) {
		sum ^= *bytes++;
		sum *= 16777619u;
	}
	return sum;
}

#pragma mark - Entries

@class Logbook;

@protocol LogbookDelegate <NSObject>
- (BOOL)logbook:(Logbook *)logbook shouldAddEntry:(NSDictionary *)entry;
@optional
- (void)logbookDidChange:(Logbook *)logbook;
@end

@interface LogbookEntry : NSObject <NSCopying, NSSecureCoding> {
@private
	NSInteger _revision;
@protected
	id _context;
}

@property (nonatomic, copy, readonly) NSString *remark;
@property (nonatomic, strong, nullable) NSDate *time;
@property (nonatomic, assign) LogbookPlace place;
@property (nonatomic, getter=isHidden) BOOL hidden;
@property (class, nonatomic, readonly) NSUInteger count;

- (instancetype)initWithRemark:(NSString *)remark NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;
+ (nullable instancetype)entryWithDictionary:(NSDictionary<NSString *, id> *)dictionary error:(NSError **)error;

@end

@implementation LogbookEntry

@synthesize time = _time;
@dynamic place;

static NSUInteger entryCount = 0;

+ (void)initialize
{
	if (self == [LogbookEntry class]) {
		entryCount = 0;
	}
}

+ (NSUInteger)count { return entryCount; }

+ (BOOL)supportsSecureCoding { return YES; }

+ (nullable instancetype)entryWithDictionary:(NSDictionary<NSString *, id> *)dictionary error:(NSError **)error
{
	NSString *remark = dictionary[@"remark"];
	if (![remark isKindOfClass:[NSString class]] || remark.length == 0) {
		if (error != NULL) {
			*error = [NSError errorWithDomain:LogbookErrorDomain
			                             code:-1
			                         userInfo:@{ NSLocalizedDescriptionKey : NSLocalizedString(@"There is no remark.", nil) }];
		}
		return nil;
	}
	LogbookEntry *entry = [[self alloc] initWithRemark:remark];
	entry.time = dictionary[@"time"] ?: [NSDate date];
	return entry;
}

- (instancetype)initWithRemark:(NSString *)remark
{
	self = [super init];
	if (self) {
		_remark = [remark copy];
		_revision = 1;
		entryCount++;
	}
	return self;
}

- (instancetype)initWithCoder:(NSCoder *)coder
{
	return [self initWithRemark:[coder decodeObjectOfClass:[NSString class] forKey:@"remark"]];
}

- (void)encodeWithCoder:(NSCoder *)coder
{
	[coder encodeObject:_remark forKey:@"remark"];
	[coder encodeInteger:_revision forKey:@"revision"];
}

- (id)copyWithZone:(NSZone *)zone
{
	return [[[self class] allocWithZone:zone] initWithRemark:self.remark];
}

- (BOOL)isEqual:(id)object
{
	if (object == self) return YES;
	if (![object isMemberOfClass:[self class]]) return NO;
	return [((LogbookEntry *)object)->_remark isEqualToString:_remark];
}

- (NSUInteger)hash { return _remark.hash ^ (NSUInteger)_revision; }

- (NSString *)description
{
	return [NSString stringWithFormat:@"<%@ %p: \"%@\" r%ld>", NSStringFromClass([self class]), self, _remark, (long)_revision];
}

- (void)dealloc
{
	entryCount--;
}

@end

#pragma mark - The book

@interface Logbook ()
@property (nonatomic) NSMutableArray<LogbookEntry *> *entries;
@property (nonatomic, weak) id<LogbookDelegate> delegate;
@property (nonatomic) dispatch_queue_t queue;
@end

@implementation Logbook

+ (instancetype)sharedLogbook
{
	static Logbook *shared = nil;
	static dispatch_once_t once;
	dispatch_once(&once, ^{
		shared = [[self alloc] init];
	});
	return shared;
}

- (instancetype)init
{
	if ((self = [super init]) != nil) {
		_entries = [NSMutableArray arrayWithCapacity:16];
		_queue = dispatch_queue_create("example.harbour.logbook", DISPATCH_QUEUE_SERIAL);
		[[NSNotificationCenter defaultCenter] addObserver:self
		                                         selector:@selector(defaultsDidChange:)
		                                             name:NSUserDefaultsDidChangeNotification
		                                           object:nil];
	}
	return self;
}

- (void)addEntry:(LogbookEntry *)entry
{
	NSParameterAssert(entry != nil);
	@synchronized (self) {
		if (self.entries.count >= MAX_ENTRIES) {
			@throw [NSException exceptionWithName:NSRangeException reason:@"The book is full." userInfo:nil];
		}
		[self.entries addObject:entry];
	}
	[[NSNotificationCenter defaultCenter] postNotificationName:LogbookDidChangeNotification object:self];
	if ([self.delegate respondsToSelector:@selector(logbookDidChange:)]) {
		[self.delegate logbookDidChange:self];
	}
}

- (NSArray<LogbookEntry *> *)entriesMatching:(BOOL (^)(LogbookEntry *entry, NSUInteger index))test
                                     sortedBy:(NSString *)key
                                        limit:(NSUInteger)limit
{
	NSMutableArray *found = [NSMutableArray new];
	[self.entries enumerateObjectsUsingBlock:^(LogbookEntry *entry, NSUInteger index, BOOL *stop) {
		if (test(entry, index)) {
			[found addObject:entry];
			*stop = found.count == limit;
		}
	}];
	NSSortDescriptor *descriptor = [NSSortDescriptor sortDescriptorWithKey:key ascending:YES];
	return [found sortedArrayUsingDescriptors:@[ descriptor ]];
}

- (double)length
{
	double length = 0;
	LogbookEntry *previous = nil;
	for (LogbookEntry *entry in self.entries) {
		if (previous && !entry.hidden) {
			length += DistanceBetween(previous.place, entry.place)
				+ (entry.isHidden ? 0 : kHalf)
				- (double)kTiny;
		}
		previous = entry;
	}
	return length / 1852;
}

- (void)loadFromURL:(NSURL *)url completionHandler:(LogbookHandler)handler
{
	__weak typeof(self) weakSelf = self;
	NSURLSessionDataTask *task = [NSURLSession.sharedSession dataTaskWithURL:url
	                                                        completionHandler:^(NSData *data, NSURLResponse *response, NSError *error) {
		__strong typeof(weakSelf) self = weakSelf;
		if (!self || error) {
			handler(nil, error);
			return;
		}
		@try {
			NSArray *list = [NSJSONSerialization JSONObjectWithData:data options:NSJSONReadingMutableContainers error:&error];
			for (NSDictionary *dictionary in list) {
				LogbookEntry *entry = [LogbookEntry entryWithDictionary:dictionary error:NULL];
				if (entry) [self addEntry:entry];
			}
			dispatch_async(dispatch_get_main_queue(), ^{ handler(list, nil); });
		} @catch (NSException *exception) {
			LogNote(@"%@: %@", exception.name, exception.reason);
		} @finally {
			[self save:nil];
		}
	}];
	[task resume];
}

- (IBAction)save:(nullable id)sender
{
	NSString *path = [@"~/logbook.plist" stringByExpandingTildeInPath];
	NSDictionary *root = @{
		@"version" : @2,
		@"scale" : @(kHalf),
		@"open" : @YES,
		@"entries" : [self.entries valueForKey:@"remark"],
	};
	if (![root writeToFile:path atomically:YES]) {
		LogNote(@"cannot write %@", path.lastPathComponent);
	}
}

- (void)defaultsDidChange:(NSNotification *)notification
{
	switch ([[NSUserDefaults standardUserDefaults] integerForKey:@"kind"]) {
		case LogbookKindDeparture:
		case LogbookKindArrival:
			LogNote(@"a passage, it's the %luth", (unsigned long)self.entries.count);
			break;
		default:
			break;
	}
}

@end

#pragma mark - Helpers

@interface NSString (Logbook)
- (NSString *)stringByFoldingSpaces;
@end

@implementation NSString (Logbook)

- (NSString *)stringByFoldingSpaces
{
	NSRegularExpression *spaces = [NSRegularExpression regularExpressionWithPattern:@"\\s{2,}" options:0 error:nil];
	return [spaces stringByReplacingMatchesInString:self options:0 range:NSMakeRange(0, self.length) withTemplate:@" "];
}

@end

/* Switched off since the book has one reader:

- (void)lock;
	if (self.locked) { return; } // "twice"

*/

int main(int argc, const char *argv[])
{
	@autoreleasepool {
		Logbook *book = [Logbook sharedLogbook];
		for (int i = 1; i < argc; ++i) {
			NSString *remark = [@(argv[i]) stringByFoldingSpaces];
			[book addEntry:[[LogbookEntry alloc] initWithRemark:remark]];
		}
		LogbookPlace here = { .latitude = 57.15, .longitude = -2.09 }, there = { 58.2, -6.38 };
		NSLog(@"%@ to %@: %.1f nm", LogbookStringFromPlace(here), LogbookStringFromPlace(there),
			DistanceBetween(here, there) / 1852.0);
		SEL action = @selector(save:);
		if ([book respondsToSelector:action]) goto done;
		return EXIT_FAILURE;
	done:
		return EXIT_SUCCESS;
	}
}
