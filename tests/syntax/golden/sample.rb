#!/usr/bin/env ruby
# frozen_string_literal: true

# A shop, with what makes Ruby hard to colour: don't stop at 'quotes' or "these" in comments.
require "json"
require_relative 'shop/version'

=begin
A block comment: def, class and "strings" in it
are comment, and # is too.
=end

module Shop
  VERSION = "1.4.0"
  WORDS = %w[red green blue].freeze
  KEYS = %i(name price), %q(it's), %Q{a #{VERSION}}
  PATTERN = /\A[\w.\/#"']+@[^\/]+\z/i
  QUOTES = ["it's", 'say "hi"', "\"", '\'', "", '', "# no comment", ?#, ?a]
  NUMBERS = [0, 1_000_000, 0xFF, 0o777, 0b1010, 1.5e-3, 3r, 2i]

  class Error < StandardError; end

  Point = Struct.new(:x, :y) do
    def length = Math.hypot(x, y)
  end

  # Something to sell.
  class Item
    include Comparable
    extend Forwardable

    attr_accessor :name, :price
    attr_reader :tags
    def_delegators :@tags, :each, :empty?

    @@count = 0
    DEFAULTS = { currency: "EUR", "vat" => 0.19, :old => nil, nested: { a: 1, b: [] } }.freeze

    class << self
      def count
        @@count
      end

      def from_json(text)
        new(**JSON.parse(text, symbolize_names: true))
      rescue JSON::ParserError, TypeError => e
        raise Error, "bad item: #{e.message} (#{text[0, 20]})"
      ensure
        $stderr.puts "parsed" if $DEBUG
      end
    end

    def initialize(name:, price: 0.0, tags: [], **rest)
      @name, @price, @tags = name, Float(price), tags
      @rest = rest unless rest.empty?
      @@count += 1
    end

    def <=>(other) = price <=> other.price
    def ==(other)
      other.is_a?(self.class) && name == other.name
    end

    def [](key) = instance_variable_get("@#{key}")
    def cheap?(limit = 10) = price < limit
    def discount!(percent)
      self.price *= 1 - percent / 100.0
      self
    end

    def to_s
      "#{name}: #{'%.2f' % price} #{DEFAULTS[:currency]}"
    end

    private

    def label
      <<~TEXT
        Name:  #{name}
        Price: #{price} # this is text
      TEXT
    end
  end

  def self.total(items, &block)
    items.select(&:cheap?).sum { |item| block ? block.call(item) : item.price }
  end

  def self.kind(value)
    case value
    in { name: String => name, price: Integer | Float } if name != ""
      :item
    in [first, *] then :list
    when nil, false then :none
    when /\d+#{VERSION}/x then :"odd name"
    else :other
    end
  end
end

items = [Shop::Item.new(name: "pen", price: 1.2), Shop::Item.new(name: 'ink', price: 12)]
items.sort.each_with_index do |item, index|
  puts "#{index + 1}. #{item}" unless item.name =~ /ink|#/
  next if index.zero?
  printf("%-10s %5.1f%%\n", item.name, item.price / 2 / 3)
end

puts Shop.total(items) { |i| i.price * 2 }
puts `date`.strip, __FILE__, __method__.inspect, items.map(&:name).join(", ")
ratio = items.size > 1 ? items[0].price / items[1].price : 0
var1 = lambda { |x| x ? true : false }
var1.(ratio) and warn "done" or exit!(1)
at_exit { STDOUT.flush }

__END__
What follows is data.
