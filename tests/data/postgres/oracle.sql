-- Oracle beyond what orafce covers.

-- Text is taken as a number wherever a number is wanted.
create cast (text as numeric) with inout as implicit;
-- There is one type of number: whole ones are not asked for.
create function trunc(numeric, numeric) returns numeric
  language sql as 'select pg_catalog.trunc($1, $2::int)';
create function add_months(oracle.date, numeric) returns timestamp
  language sql as 'select oracle.add_months($1, $2::int)';
create function numtodsinterval(numeric, text) returns interval
  language sql as 'select oracle.numtodsinterval($1::double precision, $2)';
create function to_date(numeric, text) returns oracle.date
  language sql as 'select oracle.to_date($1::text, $2)';
create function log(int, numeric) returns numeric
  language sql as 'select pg_catalog.log($1::numeric, $2)';

-- The difference of two dates is a number of days.
create function days_between(later timestamp, earlier timestamp) returns numeric
  language sql as
  'select trim_scale(extract(epoch from later operator(pg_catalog.-) earlier) / 86400)';
create operator oracle.- (leftarg = timestamp, rightarg = timestamp, function = days_between);
